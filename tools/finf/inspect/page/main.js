
/** The page, for those who look at it with the browser's tools. */
const opened = Page.open();
