
/** What the document has against the standard although it can be read. */
class DeparturePanel {
    constructor(page, element) {
        const {departures, departureCount} = page.fields.about;
        if (departureCount === 0) {
            element.append(Dom.make("p", {}, page.faultField >= 0
                ? "Up to the fault there is nothing against ITU-T X.891." : "There is nothing against ITU-T X.891."));
            return;
        }
        const rows = departures.map(({place, what, field}) => [place, what,
            field === undefined ? "" : Dom.button("Show", () => page.select(field, {from: this}),
                {"aria-label": `Show what is at ${place}`})]);
        element.append(Dom.table(departureCount > departures.length
            ? `The first ${departures.length} of ${Quoting.number(departureCount)} departures from ITU-T X.891`
            : "Departures from ITU-T X.891", ["Place", "What", ""], rows));
    }
}
