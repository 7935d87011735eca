"""Runs the pipeline (XSD -> model -> C++) and writes or checks the result."""

from __future__ import annotations

import os
from typing import Dict, List

from . import emit_cpp, emit_tests, rules

BINDING = os.path.join(os.path.dirname(os.path.abspath(__file__)), "binding.toml")

# Folders that hold nothing but generated files: a file there that the
# generator no longer writes is stale.
GENERATED_DIRS = ["src/ooxml/constants", "src/ooxml/package", "src/ooxml/spreadsheetml",
                  "src/ooxml/wordprocessingml", "src/ooxml/drawingml", "src/ooxml/presentationml",
                  "src/ooxml/vml", "tests/generated"]


def generate(schema_root: str) -> Dict[str, str]:
    model = rules.build(schema_root, BINDING)
    files = emit_cpp.emit_all(model)
    files.update(emit_tests.emit_all(model))
    return files


def _existing(out: str) -> List[str]:
    found = []
    for folder in GENERATED_DIRS:
        base = os.path.join(out, folder)
        for dirpath, _, names in os.walk(base):
            for name in names:
                found.append(os.path.relpath(os.path.join(dirpath, name), out))
    return found


def check(files: Dict[str, str], out: str) -> List[str]:
    problems = []
    for path, text in sorted(files.items()):
        full = os.path.join(out, path)
        if not os.path.exists(full):
            problems.append(f"{path}: missing")
            continue
        with open(full, encoding="utf-8", newline="") as f:
            if f.read() != text:
                problems.append(f"{path}: differs")
    for path in sorted(set(_existing(out)) - set(files)):
        problems.append(f"{path}: stale (no longer generated)")
    return problems


def write(files: Dict[str, str], out: str) -> int:
    changed = 0
    for path, text in sorted(files.items()):
        full = os.path.join(out, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        if os.path.exists(full):
            with open(full, encoding="utf-8", newline="") as f:
                if f.read() == text:
                    continue
        # Write only what changed, so that a regeneration rebuilds only it.
        with open(full, "w", encoding="utf-8", newline="") as f:
            f.write(text)
        changed += 1
    for path in set(_existing(out)) - set(files):
        os.remove(os.path.join(out, path))
    return changed
