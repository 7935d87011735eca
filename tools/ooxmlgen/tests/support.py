"""What the tests share: the fixture schemas and binding, and the model built
from them (once; the tests only read it)."""

from __future__ import annotations

import functools
import os
from typing import List, Tuple

from ooxmlgen import rules
from ooxmlgen.model import Class, Member, Model

FIXTURES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fixtures")
BINDING = os.path.join(FIXTURES, "binding.toml")
TOOLS = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def build() -> Model:
    """A fresh model of the fixtures, for a test that changes it."""
    return rules.build(FIXTURES, BINDING)


@functools.lru_cache(maxsize=None)
def model() -> Model:
    return build()


def find(name: str, key: str = "fx") -> Class:
    for cls in model().by_key(key).classes:
        if cls.name == name:
            return cls
    raise KeyError(f"{key}::{name}")


def member(cls: Class, name: str) -> Member:
    for m in cls.members:
        if m.name == name:
            return m
    raise KeyError(f"{cls.name}.{name}")


def shape(cls: Class) -> List[Tuple]:
    """(name, kind, XML name, repeated) of every member, in bit order."""
    return [(m.name, m.kind.name, m.xml, m.repeated) for m in cls.members]


def target(m: Member) -> str:
    return f"{m.target.schema.key}::{m.target.name}"
