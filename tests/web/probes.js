// What the tests ask a page, in the browser.

/** Waits until the page has drawn what it was told. */
async function frames() {
    for (let i = 0; i < 2; ++i) {
        await new Promise(resolve => requestAnimationFrame(resolve));
    }
}

/** Waits for a condition and returns what it gives. */
async function until(condition) {
    for (let i = 0; i < 2000; ++i) {
        const value = condition();
        if (value) {
            return value;
        }
        await new Promise(resolve => setTimeout(resolve, 20));
    }
    throw new Error(`never: ${condition}`);
}

/** All rows of the tree, by scrolling through it. */
async function allRows() {
    const tree = document.getElementById("constructs");
    const rows = new Map();
    for (let top = 0; ; top += tree.clientHeight - 60) {
        tree.scrollTop = top;
        await frames();
        for (const row of tree.querySelectorAll("[role=treeitem]:not([hidden])")) {
            const text = name => row.querySelector(`.${name}`).textContent;
            rows.set(Number(row.id.slice(10)), {
                offset: text("offset"), level: Number(row.ariaLevel), construct: text("construct"),
                value: text("value"),
                implied: row.querySelector(".value").classList.contains("implied"), note: text("note"),
                encoding: text("encoding"), entry: text("entry"), size: text("size"),
            });
        }
        if (top + tree.clientHeight >= tree.scrollHeight) {
            return [...rows].sort(([a], [b]) => a - b).map(([, row]) => row);
        }
    }
}

/** The bits of octets in sight that have a mark: [first, behind the last]; null when none has. */
function markedBits(name) {
    const bits = [];
    for (const cell of document.querySelectorAll(`#octets .row:not([hidden]) .${name}[id]:not([hidden])`)) {
        const octet = 8 * Number(cell.id.slice(6));
        const isPart = cell.classList.contains("part");
        bits.push(octet + (isPart ? 8 * Number(cell.style.getPropertyValue("--first")) : 0),
            octet + (isPart ? 8 * Number(cell.style.getPropertyValue("--last")) : 8));
    }
    return bits.length ? [Math.min(...bits), Math.max(...bits)] : null;
}

/** Presses a key in an element, and gives what is selected: [construct, bits, bits in sight, bits as they are shown]. */
async function press(id, key) {
    document.getElementById(id).dispatchEvent(new KeyboardEvent("keydown", {key, bubbles: true, cancelable: true}));
    await new Promise(resolve => requestAnimationFrame(resolve));
    const octets = [...document.querySelectorAll("#octets .row:not([hidden]) [id]")]
        .map(cell => Number(cell.id.slice(6)));
    const shown = [...document.querySelectorAll("#panel-construct tbody tr")]
        .map(row => [row.cells[1].textContent, row.cells[3].textContent]);
    return [selectedConstruct(), markedBits("selected"), [8 * Math.min(...octets), 8 * Math.max(...octets) + 8], shown];
}

/** The number of the construct that is selected in the tree, -1 for none in sight. */
function selectedConstruct() {
    const row = document.querySelector("#constructs [aria-selected=true]:not([hidden])");
    return row ? Number(row.id.slice(10)) : -1;
}

// Contrast (WCAG 2.1, 1.4.3 and 1.4.11)

function parsedColour(text) {
    const numbers = text.match(/[\d.]+/g).map(Number);
    return text.startsWith("color(srgb") ? [...numbers.slice(0, 3).map(n => n * 255), numbers[3] ?? 1]
        : [numbers[0], numbers[1], numbers[2], numbers[3] ?? 1];
}

function over(upper, lower) {
    return [0, 1, 2].map(i => upper[i] * upper[3] + lower[i] * (1 - upper[3])).concat(1);
}

function luminance(colour) {
    const [red, green, blue] = colour.slice(0, 3).map(value => {
        value /= 255;
        return value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

function contrast(one, other) {
    const [dark, light] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (light + 0.05) / (dark + 0.05);
}

/** What is behind the text of an element: the backgrounds of all that it is in, one over the other. */
function backgroundOf(element) {
    let colour = [255, 255, 255, 1];
    const chain = [];
    for (let each = element; each; each = each.parentElement) {
        chain.unshift(each);
    }
    for (const each of chain) {
        colour = over(parsedColour(getComputedStyle(each).backgroundColor), colour);
    }
    return colour;
}

function isSeen(element) {
    const box = element.getBoundingClientRect();
    return element.checkVisibility({visibilityProperty: true}) && box.width > 1 && box.height > 1 &&
        !element.closest(".unseen, .probe");
}

/** Texts in sight whose contrast is below 4.5, and how many texts were looked at. */
function faintTexts() {
    const faint = [];
    let count = 0;
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        const element = walker.currentNode.parentElement;
        if (walker.currentNode.data.trim() === "" || !isSeen(element) || element.localName === "script") {
            continue;
        }
        ++count;
        const background = backgroundOf(element);
        const ratio = contrast(over(parsedColour(getComputedStyle(element).color), background), background);
        if (ratio < 4.5) {
            faint.push(`${ratio.toFixed(2)} ${element.className} "${walker.currentNode.data.slice(0, 30)}"`);
        }
    }
    return {faint, count};
}

/** Borders of controls, swatches, bars and other signs in sight whose contrast to what is around them is below 3. */
function faintSigns() {
    const faint = [];
    let count = 0;
    const check = (element, colour, what) => {
        ++count;
        const around = backgroundOf(element.parentElement);
        const ratio = contrast(over(parsedColour(colour), around), around);
        if (ratio < 3) {
            faint.push(`${ratio.toFixed(2)} ${what} ${element.className || element.id || element.localName}`);
        }
    };
    for (const element of document.querySelectorAll("button, input, select, .swatch, .bar, .stack > div, #splitter")) {
        if (!isSeen(element)) {
            continue;
        }
        const style = getComputedStyle(element);
        if (element.matches(".swatch, .bar, .stack > div")) {
            check(element, style.backgroundColor, "colour of");
        } else if (element.id === "splitter") {
            check(element, getComputedStyle(element, "::after").backgroundColor, "handle of");
        } else if (parseFloat(style.borderTopWidth) > 0) {
            check(element, style.borderTopColor, "border of");
        }
    }
    return {faint, count};
}

/** The contrast of the line around what has the focus. */
function focusContrast() {
    const element = document.activeElement;
    const style = getComputedStyle(element);
    return style.outlineStyle === "none" ? 0
        : contrast(parsedColour(style.outlineColor), backgroundOf(element.parentElement));
}
