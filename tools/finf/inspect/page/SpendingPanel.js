
/** What the octets are spent on, as a picture and in figures. */
class SpendingPanel {
    constructor(page, element) {
        this._page = page;
        this._element = element;
    }

    async show() {
        if (this._isShown) {
            return;
        }
        this._isShown = true;
        this._element.replaceChildren(Dom.make("p", {}, "Counting"));
        await this._page.counted;
        const {constructs, elements, attributes} = await this._page.spending.totals();
        this._element.replaceChildren(this._kinds(),
            this._totals("By element: what is in it and in no element within", "Element", elements),
            this._totals("By attribute, with its value", "Attribute", attributes),
            this._totals("By construct", "Construct", constructs));
    }

    _kinds() {
        const {kinds} = this._page.spending;
        const names = this._page.kinds;
        const whole = kinds.reduce((sum, bits) => sum + bits, 0);
        const present = [...kinds.keys()].filter(kind => kinds[kind] > 0);
        const words = present.map(kind => `${names[kind]} ${Quoting.percent(kinds[kind], whole)}`).join(", ");
        const picture = Dom.make("div", {"class": "stack", "role": "img", "aria-label": `Spent on: ${words}`},
            ...present.map(kind => {
                const part = Dom.make("div", {class: `kind-${kind}`, title: names[kind]});
                part.style.flexGrow = kinds[kind] / whole;
                return part;
            }));
        const table = Dom.table("By purpose", ["Purpose", "Octets", "Part"], present.map(kind => [
            Dom.make("span", {class: `kind-${kind}`}, Dom.make("span", {class: "swatch"}), names[kind]),
            Quoting.octets(kinds[kind]), Quoting.percent(kinds[kind], whole)]));
        return Dom.make("section", {}, picture, table);
    }

    _totals(caption, head, list) {
        if (list.length === 0) {
            return "";
        }
        const whole = this._page.fields.octets.length * 8;
        const rows = list.map(({name, count, bits, most, field}) => [
            name, Quoting.number(count), Quoting.octets(bits), Quoting.percent(bits, whole),
            SpendingPanel._bar(bits, list[0].bits),
            Dom.button(`${Quoting.octets(most)} octets`, () => this._page.select(field, {from: this}),
                {"aria-label": `Show the largest ${name}, ${Quoting.octets(most)} octets`})]);
        return Dom.table(caption, [head, "Number", "Octets", "Part", "", "Largest"], rows);
    }

    static _bar(part, most) {
        const bar = Dom.make("div", {"class": "bar", "aria-hidden": "true"});
        bar.style.width = `${Math.max(1, 100 * part / most)}px`;
        return bar;
    }
}
