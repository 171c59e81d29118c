"""Checks every line of the standard input against a JSON Schema: validate.py SCHEMA

Prints what is wrong, one line each; the exit code tells whether anything is.
"""

import json
import sys

import jsonschema


def complaints(schema_path, lines):
    with open(schema_path, encoding="utf-8") as schema_file:
        schema = json.load(schema_file)
    jsonschema.Draft202012Validator.check_schema(schema)
    # The schema of a line's kind gives a message that says more than "no kind fits".
    kinds = {kind["properties"]["kind"]["const"]: kind for kind in schema["oneOf"]}
    whole = jsonschema.Draft202012Validator(schema)
    for number, line in enumerate(lines, start=1):
        value = json.loads(line.decode("utf-8"))
        kind = jsonschema.Draft202012Validator(kinds.get(value.get("kind"), schema))
        for error in kind.iter_errors(value):
            yield f"line {number}: {error.message}"
        if not whole.is_valid(value):
            yield f"line {number}: fits no kind, or several"


def main():
    found = list(complaints(sys.argv[1], sys.stdin.buffer))
    print("\n".join(found), end="")
    return 1 if found else 0


sys.exit(main())
