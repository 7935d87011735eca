"""What the tests share: the fixtures and the model built from them (once; the tests only read it)."""

import functools
import os

from ooxmlgen import rules

FIXTURES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fixtures")
BINDING = os.path.join(FIXTURES, "binding.toml")


@functools.lru_cache(maxsize=None)
def model():
    return rules.build(FIXTURES, BINDING)


def find(name, key="fx"):
    return next(c for c in model().by_key(key).classes if c.name == name)


def member(path):
    """"CT_Naming.Item" -> the class and its member."""
    cls = find(path.split(".")[0])
    return cls, next(m for m in cls.members if m.name == path.split(".")[1])


def shape(cls):
    """Members in bit order: name/kind initials ("VE": value element), "*" if repeated, "=XML name"."""
    return " ".join(f"{m.name}/{''.join(filter(str.isupper, m.kind.label))}{'*' * m.repeated}"
                    + (f"={m.xml}" if m.xml else "") for m in cls.members)
