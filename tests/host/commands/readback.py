#!/usr/bin/env python3
"""Reads an exported file as others would, and compares it with the samples of the plug-in.

readback.py READER BITS FILE LAPS [--units header|row|none] [--sep CHARACTER]

READER is csv, numpy, json or mat; BITS is the output of samplebits, LAPS the numbers of the laps
that FILE has to hold ("1,2,3"). Every channel has to be in FILE. Prints what differs first.
"""

import argparse
import csv
import json
import re
import sys

import numpy

VALID_BELOW = float(numpy.float32(1e24))


class Difference(Exception):
    pass


def check(is_right, *what):
    if not is_right:
        raise Difference(" ".join(str(part) for part in what))


class Channel:
    """What the plug-in gave."""

    def __init__(self, described):
        self.name = described["name"]
        self.unit = described["unit"]
        self.is_calculated = described["calculated"]
        bits = numpy.frombuffer(bytes.fromhex(described["bits"]), dtype=">u8")
        self.samples = bits.astype("u8").view("f8")
        with numpy.errstate(invalid="ignore"):
            self.is_valid = self.samples < VALID_BELOW

    def compare(self, lap, read, ticks=None):
        """Compares with the samples read: None or NaN for missing ones, up to tick `ticks`."""
        count = len(self.samples) if ticks is None else ticks
        where = f"lap {lap}, {self.name}:"
        check(len(read) == count, where, len(read), "samples instead of", count)
        values = numpy.array([numpy.nan if v is None else v for v in read], dtype="f8")
        expected = self.samples[: len(values)]
        valid = self.is_valid[: len(values)]
        check(numpy.isnan(values[len(expected):]).all(), where, "too many samples")
        values = values[: len(expected)]
        check(numpy.isnan(values[~valid]).all(), where, "a missing sample has a value")
        differs = numpy.flatnonzero(values[valid].view("u8") != expected[valid].view("u8"))
        if differs.size:
            i = numpy.flatnonzero(valid)[differs[0]]
            check(False, where, f"tick {i}: {values[i]!r} instead of {expected[i]!r}")


def all_channels(laps):
    """The channels of all laps, as the export orders them."""
    found = {}
    for lap in laps.values():
        for channel in lap:
            found.setdefault((channel.is_calculated, channel.name), channel)
    return [found[key] for key in sorted(found)]


def of_lap(lap, channel):
    """The channel of that lap, without samples where it has none."""
    for own in lap:
        if (own.is_calculated, own.name) == (channel.is_calculated, channel.name):
            return own
    return Channel({"name": channel.name, "unit": "", "calculated": False, "bits": ""})


def titles(channels, units):
    result = ["lap", "tick"]
    for channel in channels:
        name = channel.name
        while name in result:
            name += "_calculated" if channel.is_calculated else "_channel"
        result.append(name)
    if units == "header":
        result[2:] = [
            f"{name} [{c.unit}]" if c.unit else name for name, c in zip(result[2:], channels)
        ]
    return result


def compare_rows(rows, laps):
    """`rows` are lists of numbers, of which missing ones are None or NaN."""
    channels = all_channels(laps)
    check([int(row[0]) for row in rows] == sorted((int(row[0]) for row in rows)), "order of laps")
    for number, lap in laps.items():
        own = [row for row in rows if row[0] == number]
        ticks = max((len(c.samples) for c in lap), default=0)
        check([row[1] for row in own] == list(range(ticks)), f"lap {number}: ticks")
        for i, channel in enumerate(channels):
            of_lap(lap, channel).compare(number, [row[2 + i] for row in own], ticks)
    check({row[0] for row in rows} <= set(laps), "other laps")


def read_csv(arguments, laps):
    channels = all_channels(laps)
    with open(arguments.file, newline="", encoding="utf-8") as file:
        lines = list(csv.reader(file, delimiter=arguments.sep, strict=True))
    check(lines.pop(0) == titles(channels, arguments.units), "titles")
    if arguments.units == "row":
        check(lines.pop(0) == ["", ""] + [c.unit for c in channels], "units")
    compare_rows([[float(cell) if cell else None for cell in line] for line in lines], laps)


def read_numpy(arguments, laps):
    table = numpy.genfromtxt(
        arguments.file,
        delimiter=arguments.sep,
        skip_header=2 if arguments.units == "row" else 1,
        encoding="utf-8",
    )
    compare_rows(table.tolist(), laps)


def read_json(arguments, laps):
    with open(arguments.file, encoding="utf-8") as file:
        array = json.load(file)
    check([lap["lap"] for lap in array] == list(laps), "numbers of laps")
    for lap in array:
        for kind, is_calculated in (("channels", False), ("calculatedChannels", True)):
            expected = [c for c in all_channels(laps) if c.is_calculated == is_calculated]
            check(list(lap[kind]) == [c.name for c in expected], "names of", kind)
            for channel in expected:
                own = of_lap(laps[lap["lap"]], channel)
                check(lap[kind][channel.name]["unit"] == own.unit, channel.name, "unit")
                own.compare(lap["lap"], lap[kind][channel.name]["samples"])
        check(lap["header"]["samples"] >= 0 and isinstance(lap["values"], dict), "header")


def read_mat(arguments, laps):
    import scipy.io

    array = scipy.io.loadmat(arguments.file, struct_as_record=False)["laps"]
    check(array.shape == (1, len(laps)), "shape", array.shape)

    def text(cell):
        return str(cell[0]) if cell.size else ""

    check([int(lap.lap[0, 0]) for lap in array[0]] == list(laps), "numbers of laps")
    for lap in array[0]:
        number = int(lap.lap[0, 0])
        for kind, units, is_calculated in (
            ("channels", "units", False),
            ("calculatedChannels", "calculatedUnits", True),
        ):
            expected = [c for c in all_channels(laps) if c.is_calculated == is_calculated]
            if not expected:
                continue
            structs = getattr(lap, kind)[0, 0]
            fields = [re.sub("[^A-Za-z0-9_]", "_", c.name) for c in expected]
            check(structs._fieldnames == fields, "names of", kind)
            for field, channel in zip(fields, expected):
                own = of_lap(laps[number], channel)
                check(text(getattr(getattr(lap, units)[0, 0], field)) == own.unit, field, "unit")
                column = getattr(structs, field)
                check(column.shape == (len(own.samples), 1), field, "shape", column.shape)
                own.compare(number, column[:, 0])
        check(text(lap.header[0, 0].kind) != "", "header")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("reader", choices=["csv", "numpy", "json", "mat"])
    parser.add_argument("bits")
    parser.add_argument("file")
    parser.add_argument("laps")
    parser.add_argument("--units", default="row")
    parser.add_argument("--sep", default=",")
    arguments = parser.parse_args()
    with open(arguments.bits, encoding="utf-8") as file:
        every = [[Channel(c) for c in lap] for lap in json.load(file)]
    laps = {number: every[number - 1] for number in map(int, arguments.laps.split(","))}
    check(any(len(c.samples) for lap in laps.values() for c in lap), "there is nothing to compare")
    globals()["read_" + arguments.reader](arguments, laps)


try:
    main()
except Difference as difference:
    sys.exit(f"readback.py: {difference}")
