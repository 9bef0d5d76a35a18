// What the scripts hand to each other. The first part is the data as zepimport writes it; see
// docs/report.md.

export interface Quantity {
    value: number;
    unit: string;
}

/** A named value of a session; its value may also be a text, or null if it is not valid. */
export interface NamedValue {
    name: string;
    value: number | string | boolean | null;
    unit?: string;
}

export interface Weather {
    skies: string | null;
    /** Means over the lap that represents the file; so are wind, humidity and pressure. */
    air: Quantity | null;
    track: Quantity | null;
    /** As the recording names them for the session. */
    airTemperature: Quantity | null;
    trackSurfaceTemperature: Quantity | null;
    wind: Quantity | null;
    humidity: Quantity | null;
    pressure: Quantity | null;
}

export interface Session {
    file: string;
    track: string | null;
    configuration: string | null;
    car: string | null;
    driver: string | null;
    session: string | null;
    date: string | null;
    dateOfFile: boolean;
    trackLength: number | null;
    weather: Weather;
    /** True if carcass and tread of tyres change only at stops. */
    tyresSeenAtStops: boolean;
    values: NamedValue[];
    messages: { text: string, error: boolean }[];
}

export type Corner = 'lf' | 'rf' | 'lr' | 'rr';

/**
 * Each temperature and tread is left, middle and right as seen by the driver. Carcass and tread are
 * as of the last stop if they were only seen there; else a mean, and what is left at the end.
 */
export interface Tyre {
    surface: (Quantity | null)[];
    carcass: (Quantity | null)[];
    tread: (Quantity | null)[];
    /** At the start and at the end of the lap. */
    pressure: (Quantity | null)[];
}

export interface LapData {
    /** Index of the session. */
    session: number;
    number: number;
    lapInSession: number;
    stint: number;
    kind: string;
    /** Seconds; null if the lap has no time. */
    time: number | null;
    /** Why there is no time. */
    noTime: string | null;
    /** To the best lap of the page on the same track. */
    gap: number | null;
    /** True for that lap. */
    best: boolean;
    /** True for the best of the file's laps on the page. */
    bestOfFile: boolean;
    /** True if the lap counts as a timed one: from line to line, with a valid time. */
    timed: boolean;
    /** What was recorded of a partial lap, in metres from the line. */
    part: { begin: number, end: number } | null;
    /** How many laps before this one are not in the result. */
    missingBefore: number;
    completed: boolean;
    fromLine: boolean;
    /** How many there are of each channel. */
    samples: number;
    topSpeed: Quantity | null;
    fuelUsed: Quantity | null;
    fuelAdded: Quantity | null;
    fuel: { start: Quantity | null, end: Quantity | null };
    tyres: Record<Corner, Tyre>;
}

/** Whole steps above a base, which `samples` packs. */
export interface Packing {
    base: number;
    step: number;
    /** True if all samples are whole numbers. */
    whole: boolean;
}

export interface PackedChannel {
    unit: string;
    /** One for each session. */
    packings: Packing[];
}

export interface ReportData {
    sessions: Session[];
    laps: LapData[];
    /** Distance, time, latitude, longitude. */
    places: PackedChannel[];
    channels: (PackedChannel & { name: string, calculated: boolean })[];
    /** zlib in base64. */
    samples: string;
}

export type Axis = 'distance' | 'time';
export type UnitSystem = 'driver' | 'recorded';
export type Theme = 'light' | 'dark';

/** The ticks of a lap at which the axis moves on, and the place on the axis at each of them. */
export interface Path {
    ticks: number[];
    values: number[];
}

/** The time since the start of the lap by distance; both rise. */
export interface Elapsed {
    distances: number[];
    times: number[];
}

export interface Lap extends LapData {
    index: number;
    label: string;
    /** The same text for laps that can be compared. */
    track: string;
    trackLength: number | null;
    ticks: Record<'distance' | 'time' | 'latitude' | 'longitude', Float64Array>;
    /** Which colour a drawn lap has. */
    slot: number;
    /** Calculated when first needed. */
    paths: { distance?: Path, time?: Path };
    elapsed?: Elapsed;
}

export interface Channel extends PackedChannel {
    name: string;
    calculated: boolean;
    title: string;
    key: string;
    /** True if all samples are whole numbers. */
    whole: boolean;
    /** The samples of each lap; NaN for a missing one. */
    laps: Float64Array[];
}

export interface Model {
    sessions: Session[];
    laps: Lap[];
    channels: Channel[];
}

/** A stretch of the axis. */
export interface Stretch {
    min: number;
    max: number;
}

export type Samples = (number | null)[];

/** What one chart shows. */
export interface ChartContent {
    key: string;
    title: string;
    unit: string;
    note?: string;
    /** True if the area between a line and zero is filled. */
    filled: boolean;
    /** The samples of each lap at the places of the grid. */
    data: Samples[];
    format: (value: number) => string;
    /** The ends of the vertical axis for data from `least` to `most`, both null without data. */
    ends: (least: number | null, most: number | null) => [number, number];
    /** True if the value changes from tick to tick without a slope. */
    stepped: boolean;
}

export interface Point {
    x: number;
    y: number;
}

/** A place of a lap on the map, in map units. */
export interface MapPoint extends Point {
    speed: number;
    /** Place on the axis. */
    place: number;
}
