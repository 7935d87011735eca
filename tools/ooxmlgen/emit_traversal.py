"""Prints the generic traversal (library ooxml::traversal): for every class a
ClassInfo (create, destroy, read, and a visit function that reports the
members in declaration order, base-class members first), a NodeOf() overload
that starts a walk, and the registry of every class (AllClasses)."""

from __future__ import annotations

import math
from typing import Dict, List

from .cpp import BANNER, guard, string_literal
from .emit_cpp import CLASSES_PER_SOURCE
from .model import Class, Member, Model, Schema


def _info(cls: Class) -> str:
    return f"info::{cls.schema.key}::{cls.name}"


def _qualified(cls: Class) -> str:
    return f"::{cls.schema.cpp_namespace}::{cls.name}"


def emit_header(schema: Schema) -> str:
    path = f"ooxml/traversal/{schema.key}_traversal.h"
    out = [BANNER, f"// Traversal of the classes of {schema.uri}: see ooxml/traversal/traversal.h.",
           f"#ifndef {guard(path)}", f"#define {guard(path)}", "", '#include "ooxml/traversal/traversal.h"', "",
           f"namespace {schema.cpp_namespace}", "{"]
    out += [f"class {cls.name};" for cls in schema.classes]
    out += ["}", "", "namespace ooxml", "{", "namespace traversal", "{", ""]
    out += [f"OOXML_API Node NodeOf(const {_qualified(cls)}& object);" for cls in schema.classes]
    out += ["", "} // namespace traversal", "} // namespace ooxml", "", f"#endif // {guard(path)}"]
    return "\n".join(out) + "\n"


def emit_infos(model: Model) -> str:
    """Internal: the ClassInfo of every class, for the sources that reference
    other schemas' classes."""
    out = [BANNER, "// The ClassInfo of every generated class.  Internal to the traversal library.",
           "#ifndef OOXML_TRAVERSAL_INFOS_H", "#define OOXML_TRAVERSAL_INFOS_H", "",
           '#include "ooxml/traversal/traversal.h"', "", "namespace ooxml", "{", "namespace traversal", "{",
           "namespace info", "{"]
    for schema in model.class_schemas():
        names = " ".join(f"extern const ClassInfo {cls.name};" for cls in schema.classes)
        out.append(f"namespace {schema.key} {{ {names} }}")
    out += ["} // namespace info", "} // namespace traversal", "} // namespace ooxml", "",
            "#endif // OOXML_TRAVERSAL_INFOS_H"]
    return "\n".join(out) + "\n"


def emit_registry(model: Model) -> str:
    out = [BANNER, '#include "ooxml/traversal/traversal.h"', "", '#include "infos.h"', "",
           "namespace ooxml", "{", "namespace traversal", "{", "", "namespace", "{", "",
           "const ClassInfo* const kClasses[] = {"]
    for schema in model.class_schemas():
        out += [f"    &{_info(cls)}," for cls in schema.classes]
    out += ["};", "", "} // namespace", "", "ClassList AllClasses()", "{",
            "    return ClassList{kClasses, sizeof(kClasses) / sizeof(kClasses[0])};", "}", "",
            "} // namespace traversal", "} // namespace ooxml"]
    return "\n".join(out) + "\n"


def _member_literal(cls: Class, m: Member, present: str) -> str:
    xml = m.xml or ""
    repeated = "true" if m.kind.listed(m) else "false"
    return (f'Member{{"{m.name}", "{xml}", MemberKind::{m.kind.label}, {m.bit}, {present}, '
            f'{repeated}, 0, &{_info(cls)}}}')


def _visit_function(cls: Class) -> List[str]:
    lines = [f"void Visit_{cls.name}(const void* object, Visitor& visitor)", "{"]
    uses = cls.base is not None or cls.members or cls.any_base
    if uses:
        lines.append(f"    const {_qualified(cls)}& o = *static_cast<const {_qualified(cls)}*>(object);")
    else:
        lines += ["    (void)object;", "    (void)visitor;"]
    if cls.base is not None:
        lines.append(f"    {_info(cls.base)}.visit(static_cast<const {_qualified(cls.base)}*>(&o), visitor);")
    if cls.any_base:
        lines.append(f'    VisitValue(visitor, Member{{"Value", "", MemberKind::Text, 0, !o.IsNull(), false, 0, '
                     f'&{_info(cls)}}}, static_cast<const wxAny&>(o));')
    for m in cls.members:
        member = _member_literal(cls, m, f"o.Check{m.name}()")
        lines.append(f"    {m.kind.visit(m, member, f'o.Get{m.name}()', _info)}")
    lines.append("}")
    return lines


def emit_sources(schema: Schema) -> Dict[str, str]:
    classes = schema.classes
    parts = max(1, math.ceil(len(classes) / CLASSES_PER_SOURCE))
    size = math.ceil(len(classes) / parts)
    out = {}
    for part in range(parts):
        chunk = classes[part * size:(part + 1) * size]
        suffix = f"_{part + 1}" if parts > 1 else ""
        headers = {schema.header}
        for cls in chunk:
            if cls.base is not None:
                headers.add(cls.base.schema.header)
        lines = [BANNER, f'#include "ooxml/traversal/{schema.key}_traversal.h"', ""]
        lines += [f'#include "{h}"' for h in sorted(headers)]
        lines += ['#include "infos.h"', '#include "visit.h"', "",
                  "namespace ooxml", "{", "namespace traversal", "{", "", "namespace", "{", ""]
        for cls in chunk:
            lines += _visit_function(cls)
            lines.append("")
        lines += ["} // namespace", ""]
        for cls in chunk:
            if cls.content_types:
                items = "".join(f"{string_literal(t)}, " for t in cls.content_types)
                lines.append(f"const char* const kContentTypes_{cls.name}[] = {{{items}nullptr}};")
            if cls.part_elements:
                items = "".join(f"{string_literal(t)}, " for t in cls.part_elements)
                lines.append(f"const char* const kPartElements_{cls.name}[] = {{{items}nullptr}};")
        for cls in chunk:
            q = _qualified(cls)
            types = f"kContentTypes_{cls.name}" if cls.content_types else "nullptr"
            element = string_literal(cls.root_element) if cls.root_element else "nullptr"
            part_elements = f"kPartElements_{cls.name}" if cls.part_elements else "nullptr"
            lines.append(f'const ClassInfo {_info(cls)} = {{"{cls.name}", "{schema.key}", '
                         f'"{schema.cpp_namespace}", &Visit_{cls.name}, &Create<{q}>, &Destroy<{q}>, &Read<{q}>, &Read<{q}>, '
                         f'&typeid({q}), "{schema.key}::{cls.name}", {string_literal(schema.uri)}, {element}, {types}, '
                         f'{part_elements}}};')
        lines.append("")
        for cls in chunk:
            lines.append(f"Node NodeOf(const {_qualified(cls)}& object) {{ return Node{{&object, &{_info(cls)}}}; }}")
        lines += ["", "} // namespace traversal", "} // namespace ooxml"]
        out[f"generated/traversal/{schema.key}_traversal{suffix}.cpp"] = "\n".join(lines) + "\n"
    return out


def emit_all(model: Model) -> Dict[str, str]:
    files: Dict[str, str] = {}
    sources: List[str] = []
    headers: List[str] = []
    for schema in model.class_schemas():
        header = f"generated/traversal/ooxml/traversal/{schema.key}_traversal.h"
        files[header] = emit_header(schema)
        headers.append(header)
        for path, text in emit_sources(schema).items():
            files[path] = text
            sources.append(path)
    umbrella = [BANNER, "// The traversal of every schema.", "#ifndef OOXML_TRAVERSAL_SCHEMAS_H",
                "#define OOXML_TRAVERSAL_SCHEMAS_H", "",
                '#include "ooxml/traversal/traversal.h"']
    umbrella += [f'#include "ooxml/traversal/{s.key}_traversal.h"' for s in model.class_schemas()]
    umbrella += ["", "#endif // OOXML_TRAVERSAL_SCHEMAS_H"]
    files["generated/traversal/ooxml/traversal/schemas.h"] = "\n".join(umbrella) + "\n"
    headers.append("generated/traversal/ooxml/traversal/schemas.h")
    files["generated/traversal/infos.h"] = emit_infos(model)
    files["generated/traversal/registry.cpp"] = emit_registry(model)
    sources.append("generated/traversal/registry.cpp")
    files["generated/traversal.cmake"] = (
        "# Generated by tools/ooxmlgen. Do not edit.\nset(OOXML_TRAVERSAL_SOURCES\n"
        + "".join(f"    {p}\n" for p in sorted(sources)) + ")\nset(OOXML_TRAVERSAL_HEADERS\n"
        + "".join(f"    {h}\n" for h in sorted(headers)) + ")\n")
    return files
