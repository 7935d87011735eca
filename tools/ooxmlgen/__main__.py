"""Command line: regenerate the committed C++, or check that it is current.

    python3 tools/ooxmlgen [--schemas DIR] [--binding FILE] [--out DIR] [--check]
    python3 tools/ooxmlgen --dump-model [--class NAME]

--schemas defaults to ../shared/schemas seen from the project root, --binding
to tools/ooxmlgen/binding.toml, --out to the project root.  --check writes
nothing: it regenerates in memory and fails (exit status 1) if any generated
file differs, is missing or is stale.  --dump-model prints the model as JSON
instead of writing C++ (with --class, only the classes of that name).  A
missing schema folder or a schema or binding problem is exit status 2.
"""

import argparse
import os
import sys

if __package__ in (None, ""):
    # Run as `python3 tools/ooxmlgen`: make the package importable.
    sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    __package__ = "ooxmlgen"

from ooxmlgen import dump, generate, rules  # noqa: E402


def main() -> int:
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    parser = argparse.ArgumentParser(prog="ooxmlgen", description=__doc__.splitlines()[0])
    parser.add_argument("--schemas", default=os.path.join(root, "..", "shared", "schemas"),
                        help="folder of the XSDs (default: ../shared/schemas)")
    parser.add_argument("--binding", default=generate.BINDING,
                        help="binding file (default: tools/ooxmlgen/binding.toml)")
    parser.add_argument("--out", default=root, help="project root to write into (default: this project)")
    parser.add_argument("--check", action="store_true",
                        help="fail if the committed generated files differ from a fresh generation")
    parser.add_argument("--dump-model", action="store_true", help="print the model as JSON, write nothing")
    parser.add_argument("--class", dest="class_name", metavar="NAME",
                        help="with --dump-model: only the classes of this name")
    args = parser.parse_args()
    if args.class_name and not args.dump_model:
        parser.error("--class goes with --dump-model")
    if not os.path.isdir(args.schemas):
        print(f"ooxmlgen: {args.schemas}: no such schema folder", file=sys.stderr)
        return 2
    try:
        if args.dump_model:
            sys.stdout.write(dump.dump(rules.build(args.schemas, args.binding), args.class_name))
            return 0
        files = generate.generate(args.schemas, args.binding)
    except Exception as error:  # a schema or binding problem: one clear line
        print(f"ooxmlgen: {error}", file=sys.stderr)
        return 2
    if args.check:
        problems = generate.check(files, args.out)
        for line in problems:
            print(f"ooxmlgen --check: {line}", file=sys.stderr)
        if problems:
            print("ooxmlgen --check: generated code is not current; run `python3 tools/ooxmlgen`",
                  file=sys.stderr)
            return 1
        print(f"ooxmlgen --check: {len(files)} generated files are current")
        return 0
    written = generate.write(files, args.out)
    print(f"ooxmlgen: {len(files)} files generated, {written} changed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
