
/** Literals that come again although an index could stand for them. */
class RepeatPanel {
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
        const {list, count, bits} = await this._page.spending.repeats();
        if (count === 0) {
            this._element.replaceChildren(Dom.make("p", {}, "No literal that is in no table comes again."));
            return;
        }
        const {fields} = this._page;
        const whole = fields.octets.length * 8;
        const rows = list.map(entry => [
            fields.quotedValue(entry.field, 80), fields.shape(entry.field).construct,
            Quoting.number(entry.count), Quoting.octets(entry.bits),
            Dom.button(`at ${Quoting.place(fields.start(entry.field))}`,
                () => this._page.select(entry.field, {from: this}))]);
        this._element.replaceChildren(
            Dom.make("p", {}, `${Quoting.number(count)} literals come again although they are in no table: ` +
                `${Quoting.octets(bits)} octets, ${Quoting.percent(bits, whole)}, that indexes would mostly save ` +
                "(finf encode --max-indexed-length)."),
            Dom.table(count > list.length ? `The largest ${list.length}` : "All of them",
                ["Literal", "Construct", "Times", "Octets but the first", "First"], rows));
    }
}
