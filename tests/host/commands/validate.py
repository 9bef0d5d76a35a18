#!/usr/bin/env python3
"""Holds JSON against a schema.

validate.py SCHEMA FILE

Both are JSON; the schema itself has to be sound, too. Numbers that other parsers refuse (NaN,
Infinity, 1e999) are an error. Prints what is wrong first, and where.
"""

import json
import math
import sys

import jsonschema


def finite(text):
    number = float(text)
    if not math.isfinite(number):
        raise ValueError(f"{text} is no number that every parser reads")
    return number


def refuse(name):
    raise ValueError(f"{name} is not JSON")


def main(schema_file, file):
    with open(schema_file, encoding="utf-8") as opened:
        schema = json.load(opened)
    with open(file, encoding="utf-8") as opened:
        document = json.load(opened, parse_float=finite, parse_constant=refuse)
    jsonschema.Draft202012Validator.check_schema(schema)
    jsonschema.Draft202012Validator(schema).validate(document)
    if not document:
        raise ValueError("there is nothing to hold against the schema")


try:
    main(*sys.argv[1:])
except jsonschema.SchemaError as error:
    sys.exit(f"validate.py: the schema: {error.message}")
except jsonschema.ValidationError as error:
    sys.exit(f"validate.py: {error.json_path}: {error.message}")
except ValueError as error:
    sys.exit(f"validate.py: {error}")
