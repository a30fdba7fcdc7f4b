// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The results of a sweep as the page reads them: points, their scores, the best front. Everything
// here is a plain function of the results file, results.json.

// Scores that the page adds to those of the file, each from two counts.
const kAdded = [
    {
        name: "missed_per_1000",
        better: "lower",
        what: "labelled frames of 1000 that are not reported",
        of: (get) => share(get("misses"), get("hits")),
    },
];

const share = (part, rest) =>
    part === null || rest === null || part + rest === 0 ? null : (1000 * part) / (part + rest);

// `results` is the parsed file. Gives the same with `scores` extended, an index for each point, and
// `varied`, the places of the keys that take more than one value.
export function prepare(results) {
    const names = results.scores.map((s) => s.name);
    const extend = (values) => {
        const get = (name) => values[names.indexOf(name)] ?? null;
        return [...values, ...kAdded.map((a) => a.of(get))];
    };
    const points = results.points.map((point, index) => ({
        ...point,
        index,
        total: extend(point.total),
        runs: point.runs.map((run) => (run.scores ? { ...run, scores: extend(run.scores) } : run)),
    }));
    const scores = [
        ...results.scores,
        ...kAdded.map(({ name, better, what }) => ({ name, better, what })),
    ];
    const varied = results.keys.flatMap((key, k) => (key.values.length > 1 ? [k] : []));
    return { ...results, points, scores, varied };
}

export const scoreIndex = (sweep, name) => sweep.scores.findIndex((s) => s.name === name);

// The score of a point over all clips (clip -1) or one; null where it is not defined.
export function scoreOf(sweep, point, clip, name) {
    const i = scoreIndex(sweep, name);
    const values = clip < 0 ? point.total : (point.runs[clip].scores ?? []);
    const done = clip < 0 ? point.status === "done" : point.runs[clip].status === "done";
    return done ? (values[i] ?? null) : null;
}

// True if some point has this score.
export const hasScore = (sweep, clip, name) =>
    sweep.points.some((p) => scoreOf(sweep, p, clip, name) !== null);

// The order of scores a and b by `better`: negative if a comes first. Undefined ones come last.
export function compareScores(a, b, better) {
    if (a === null || b === null) return (a === null) - (b === null);
    return better === "lower" ? a - b : b - a;
}

// The points that no other point beats in both scores: as good in one and better in the other.
export function front(sweep, clip, xName, yName) {
    const [x, y] = [xName, yName].map((n) => sweep.scores[scoreIndex(sweep, n)]);
    const cost = (value, score) => (score.better === "higher" ? -value : value);
    const places = sweep.points
        .map((p) => [p, scoreOf(sweep, p, clip, xName), scoreOf(sweep, p, clip, yName)])
        .filter(([, a, b]) => a !== null && b !== null)
        .map(([p, a, b]) => ({ p, a: cost(a, x), b: cost(b, y) }))
        .sort((s, t) => s.a - t.a || s.b - t.b);
    const found = new Set();
    let best = null;
    for (const place of places) {
        const same = best !== null && place.a === best.a && place.b === best.b;
        if (best !== null && place.b >= best.b && !same) continue;
        best = place;
        found.add(place.p.index);
    }
    return found;
}

// Places of the plane that several points share, as { x, y, members }: members are the given
// { x, y, ... } in their order, and so are the piles, each where its first member was.
export function pilesOf(places) {
    const found = new Map();
    for (const place of places) {
        const key = `${place.x} ${place.y}`;
        if (!found.has(key)) found.set(key, { x: place.x, y: place.y, members: [] });
        found.get(key).members.push(place);
    }
    return [...found.values()];
}

// The point to open with: fewest limits missed, then the best f1, then the most motion.
export function firstChoice(sweep) {
    const f1 = (p) => scoreOf(sweep, p, -1, "f1");
    const motion = (p) => scoreOf(sweep, p, -1, "motion_frames");
    const order = sweep.points
        .filter((p) => p.status === "done")
        .sort(
            (a, b) =>
                a.missed.length - b.missed.length ||
                compareScores(f1(a), f1(b), "higher") ||
                compareScores(motion(a), motion(b), "higher") ||
                a.index - b.index,
        );
    return order[0]?.index ?? 0;
}

// What the values of key `k` do to a score: for each value its lowest, quartiles and highest score
// over all points with that value that have one.
export function keyEffect(sweep, k, clip, name) {
    return sweep.keys[k].values.map((value) => {
        const list = sweep.points
            .filter((p) => p.values[k] === value)
            .map((p) => scoreOf(sweep, p, clip, name))
            .filter((v) => v !== null)
            .sort((a, b) => a - b);
        return { value, n: list.length, ...fiveNumbers(list) };
    });
}

// Lowest, lower quartile, median, upper quartile and highest of an ascending list; nulls if empty.
export function fiveNumbers(list) {
    const at = (q) => {
        if (list.length === 0) return null;
        const place = q * (list.length - 1);
        const below = Math.floor(place);
        const above = Math.ceil(place);
        return list[below] + (list[above] - list[below]) * (place - below);
    };
    return { low: at(0), q1: at(0.25), median: at(0.5), q3: at(0.75), high: at(1) };
}

// "12.3m80h" as [[12, "."], [3, "m"], [80, "h"]].
export const unpackStrip = (text) =>
    [...text.matchAll(/(\d+)(\D)/g)].map(([, n, letter]) => [Number(n), letter]);
