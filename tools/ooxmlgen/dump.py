"""The model as JSON (`--dump-model`): what the rules made of the XSDs, before
any C++ is printed.  Classes and targets are named "key::Class", as the
aliases of ooxml/aliases.h name them ("sml::CT_Worksheet")."""

from __future__ import annotations

import json
from typing import Optional

from .model import Class, Member, Model, Schema


def _ref(cls: Optional[Class]) -> Optional[str]:
    return f"{cls.schema.key}::{cls.name}" if cls is not None else None


def _member(cls: Class, m: Member) -> dict:
    return {
        "name": m.name,
        "kind": m.kind.name,
        "xml": m.xml,
        "bit": m.bit,
        "repeated": m.repeated,
        "value": None if m.value is None else {"cpp": m.value.cpp, "parse": m.value.parse,
                                               "list": m.value.is_list},
        "target": _ref(m.target),
        "storage": m.kind.storage(cls, m),
        "default": m.default,
        # Bits of the members of its own branch, one of which must be present.
        "branch_guard": m.branch_guard,
    }


def _class(cls: Class) -> dict:
    return {"name": cls.name, "xsd_name": cls.xsd_name, "kind": cls.kind, "base": _ref(cls.base),
            "any_base": cls.any_base, "members": [_member(cls, m) for m in cls.members]}


def _schema(schema: Schema, class_name: Optional[str]) -> dict:
    out = {"key": schema.key, "uri": schema.uri, "family": schema.family, "prefix": schema.prefix,
           "namespace": schema.cpp_namespace, "map": schema.map,
           "classes": [_class(c) for c in schema.classes if class_name in (None, c.name)]}
    if class_name is None:
        out["names"] = schema.names
    return out


def dump(model: Model, class_name: Optional[str] = None) -> str:
    """Every schema; with `class_name`, only the classes of that name and
    the schemas that have one."""
    schemas = [_schema(s, class_name) for s in model.schemas]
    if class_name is not None:
        schemas = [s for s in schemas if s["classes"]]
        if not schemas:
            raise ValueError(f"no class named {class_name!r}")
    return json.dumps({"schemas": schemas}, indent=1) + "\n"
