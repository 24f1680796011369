
/** Panels of which one is seen, with a row of tabs above them. */
class Tabs {
    constructor(list, panels) {
        this._list = list;
        this._panels = panels;
        this._tabs = [];
        list.addEventListener("keydown", event => this._key(event));
    }

    /** Adds a panel; shown() is called whenever it comes into sight. Returns its element. */
    add(name, title, shown) {
        const tab = Dom.button(title, () => this.show(name), {
            "role": "tab", "id": `tab-${name}`, "aria-controls": `panel-${name}`, "aria-selected": "false",
            "tabindex": "-1",
        });
        const panel = Dom.make("div", {
            "role": "tabpanel", "id": `panel-${name}`, "aria-labelledby": `tab-${name}`, "tabindex": "0", "hidden": "",
        });
        this._tabs.push({name, tab, panel, shown});
        this._list.append(tab);
        this._panels.append(panel);
        return panel;
    }

    get current() {
        return this._current;
    }

    show(name) {
        this._current = name;
        for (const each of this._tabs) {
            const isIt = each.name === name;
            each.tab.ariaSelected = isIt;
            each.tab.tabIndex = isIt ? 0 : -1;
            each.panel.hidden = !isIt;
            if (isIt) {
                each.shown();
            }
        }
    }

    _key(event) {
        const at = this._tabs.findIndex(each => each.name === this._current);
        const count = this._tabs.length;
        const next = {ArrowRight: at + 1, ArrowLeft: at + count - 1, Home: 0, End: count - 1}[event.key];
        if (next !== undefined) {
            event.preventDefault();
            const {name, tab} = this._tabs[next % count];
            this.show(name);
            tab.focus();
        }
    }
}
