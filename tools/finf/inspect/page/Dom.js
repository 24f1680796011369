
/** Makes elements. Texts become text nodes, whatever they hold. */
class Dom {
    /** An element with attributes (of properties those that begin with a dot) and children: elements or texts. */
    static make(tag, attributes = {}, ...children) {
        const element = document.createElement(tag);
        for (const [name, value] of Object.entries(attributes)) {
            if (name.startsWith(".")) {
                element[name.slice(1)] = value;
            } else if (value !== undefined) {
                element.setAttribute(name, value);
            }
        }
        element.append(...children);
        return element;
    }

    /** A button that does something. */
    static button(text, action, attributes = {}) {
        const button = Dom.make("button", {type: "button", ...attributes}, text);
        button.addEventListener("click", action);
        return button;
    }

    /**
     * A table with a caption, column heads, and rows of cells (elements or texts); the first one heads its row. Figures
     * are below one another, and only long texts are broken.
     */
    static table(caption, heads, rows) {
        const isFigure = i => rows.every(row => typeof row[i] === "string" && /^\d[\d.\u2009]*( ?%)?$/.test(row[i]));
        const isLong = i => rows.some(row => typeof row[i] === "string" && row[i].length > 24);
        const kinds = heads.map((_, i) => isLong(i) ? "long" : i > 0 && isFigure(i) ? "figure" : undefined);
        const cells = (tag, scope, texts) => texts.map((text, i) => {
            const isHead = i === 0 || scope === "col";
            return Dom.make(isHead ? "th" : tag, {class: kinds[i], scope: isHead ? scope : undefined}, text);
        });
        return Dom.make("table", {}, Dom.make("caption", {}, caption),
            Dom.make("thead", {}, Dom.make("tr", {}, ...cells("th", "col", heads))),
            Dom.make("tbody", {}, ...rows.map(row => Dom.make("tr", {}, ...cells("td", "row", row)))));
    }
}
