// stub, replaced below
import { h } from "../../page/dom.js";
export const createLabels = () => ({
    node: h("div.panel.labels"),
    drawing: () => false,
    marking: () => false,
    drawOnBand() {},
});
