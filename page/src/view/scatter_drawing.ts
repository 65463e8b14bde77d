import type { Density } from "../model/density.ts";

/** The part of a canvas that a plot takes, in pixels of the page. */
export interface Area {
    readonly left: number;
    readonly top: number;
    readonly width: number;
    readonly height: number;
}

/** Where something is drawn: 0 to 1 from the left, and from the bottom. */
interface Place {
    readonly across: number;
    readonly up: number;
}

/** A place with a shade: -1 for far below chance, 0 for chance, 1 for far above it. */
interface Point extends Place {
    readonly shade: number;
}

type Colour = readonly [number, number, number];

/** The colours of the page for a shade of -1, 0 and 1, and for what is chosen. */
interface Palette {
    readonly below: Colour;
    readonly chance: Colour;
    readonly above: Colour;
    readonly ink: string;
    readonly line: string;
}

/** Draws a disc for each rule. */
export function drawPoints(
    drawing: CanvasRenderingContext2D,
    area: Area,
    points: readonly Point[],
    chosen: Place | undefined,
): void {
    const palette = paletteOf(drawing.canvas);
    drawFrame(drawing, area, palette);
    const { radius, density } = sizeFor(points.length);
    for (const { across, up, shade } of points) {
        const [red, green, blue] = mixed(palette, shade);
        drawing.fillStyle = `rgb(${red} ${green} ${blue} / ${density})`;
        drawing.beginPath();
        drawing.arc(
            area.left + across * area.width,
            area.top + (1 - up) * area.height,
            radius,
            0,
            2 * Math.PI,
        );
        drawing.fill();
    }
    drawChosen(drawing, area, chosen, palette);
}

/** The more discs there are, the smaller and the paler they are. */
function sizeFor(points: number): { radius: number; density: number } {
    const few = 60;
    if (points <= few) {
        return { radius: 5, density: 0.8 };
    }
    return points <= 20 * few ? { radius: 4, density: 0.7 } : { radius: 2.5, density: 0.5 };
}

/** Draws a square for each cell with rules, the denser the more there are. */
export function drawCells(
    drawing: CanvasRenderingContext2D,
    area: Area,
    { columns, rows, counts, means }: Density,
    chosen: Place | undefined,
): void {
    const palette = paletteOf(drawing.canvas);
    drawFrame(drawing, area, palette);
    const picture = new OffscreenCanvas(columns, rows);
    picture.getContext("2d")?.putImageData(pictureOf({ columns, rows, counts, means }, palette), 0, 0);
    drawing.imageSmoothingEnabled = false;
    drawing.drawImage(picture, area.left, area.top, area.width, area.height);
    drawChosen(drawing, area, chosen, palette);
}

/** A picture with a pixel for each cell, which is drawn much faster than a rectangle for each. */
function pictureOf({ columns, rows, counts, means }: Density, palette: Palette): ImageData {
    const picture = new ImageData(columns, rows);
    const most = Math.log1p(counts.reduce((one, other) => Math.max(one, other), 1));
    for (let cell = 0; cell < counts.length; ++cell) {
        const count = counts[cell]!;
        if (count > 0) {
            const row = rows - 1 - Math.floor(cell / columns);
            const opacity = 0.4 + (0.6 * Math.log1p(count)) / most;
            const colour = [...mixed(palette, means[cell]!), Math.round(255 * opacity)];
            picture.data.set(colour, 4 * (row * columns + (cell % columns)));
        }
    }
    return picture;
}

function drawFrame(drawing: CanvasRenderingContext2D, area: Area, { line }: Palette): void {
    drawing.strokeStyle = line;
    drawing.lineWidth = 1;
    drawing.beginPath();
    drawing.moveTo(area.left - 0.5, area.top);
    drawing.lineTo(area.left - 0.5, area.top + area.height + 0.5);
    drawing.lineTo(area.left + area.width, area.top + area.height + 0.5);
    drawing.stroke();
}

function drawChosen(
    drawing: CanvasRenderingContext2D,
    area: Area,
    chosen: Place | undefined,
    { ink }: Palette,
): void {
    if (chosen === undefined || Number.isNaN(chosen.across + chosen.up)) {
        return;
    }
    drawing.strokeStyle = ink;
    drawing.lineWidth = 2;
    drawing.beginPath();
    drawing.arc(
        area.left + chosen.across * area.width,
        area.top + (1 - chosen.up) * area.height,
        8,
        0,
        2 * Math.PI,
    );
    drawing.stroke();
}

function mixed({ below, chance, above }: Palette, shade: number): Colour {
    const end = shade < 0 ? below : above;
    const part = Math.min(1, Math.abs(Number.isNaN(shade) ? 0 : shade));
    const mix = (i: 0 | 1 | 2) => Math.round(chance[i] + part * (end[i] - chance[i]));
    return [mix(0), mix(1), mix(2)];
}

function paletteOf(element: Element): Palette {
    const style = getComputedStyle(element);
    const colour = (name: string): Colour => {
        const [red = 0, green = 0, blue = 0] = style.getPropertyValue(name).trim().split(/\s+/u).map(Number);
        return [red, green, blue];
    };
    return {
        below: colour("--below"),
        chance: colour("--chance"),
        above: colour("--above"),
        ink: style.getPropertyValue("--ink"),
        line: style.getPropertyValue("--line-strong"),
    };
}
