"""Prints the model as C++: one header and one or more sources per schema,
the name constants, the namespace maps, the umbrella header and the CMake list
of generated sources.  Every rule was applied in rules.py; this module only
formats, asking each member's kind (kinds.py) for the C++ of that member."""

from __future__ import annotations

import math
from typing import Dict, List, Set

from .cpp import BANNER, class_ref, guard, mark, mask_declaration, string_literal, test
from .kinds import ATTRIBUTES, CHILDREN, CONTENT
from .model import Class, Member, Model, Schema

# Classes per generated source file: large schemas are split so that the two
# cores of a build share the work and one change rebuilds a part of a schema.
CLASSES_PER_SOURCE = 70


# -- header -----------------------------------------------------------------------------

# Accessors of scalars and pointers, and every Check, are defined in the class:
# they are trivial to compile and to inline.  Those of strings, variants and
# arrays copy their value and are defined in the sources: inline, they would
# cost every includer the parsing of thousands of std::vector and wxString
# instantiations.
# Each getter carries a comment with the member's XML name and kind.
def _accessor_declarations(cls: Class, m: Member) -> List[str]:
    t = m.kind.storage(cls, m)
    comment = f"    // {m.kind.comment(cls, m)}"
    check = f"    bool Check{m.name}() const {{ return {test(cls, m.bit)}; }}"
    if m.kind.by_value(m):
        return [comment, f"    {t} Get{m.name}() const {{ return m_{m.name}; }}",
                f"    void Set{m.name}({t} value) {{ m_{m.name} = value; {mark(cls, m.bit)} }}",
                check]
    return [comment, f"    {t} Get{m.name}() const;", f"    void Set{m.name}({t} value);", check]


def _accessor_definitions(cls: Class) -> List[str]:
    lines = []
    for m in cls.members:
        t = m.kind.storage(cls, m)
        if not m.kind.by_value(m):
            lines += [f"{t} {cls.name}::Get{m.name}() const {{ return m_{m.name}; }}",
                      f"void {cls.name}::Set{m.name}({t} value) {{ m_{m.name} = std::move(value); {mark(cls, m.bit)} }}"]
    return lines


def _class_declaration(cls: Class) -> List[str]:
    lines = []
    if cls.base is not None:
        heading = f"class OOXML_API {cls.name} : public {class_ref(cls, cls.base)}"
    elif cls.any_base:
        heading = f"class OOXML_API {cls.name} : public wxAny"
    else:
        heading = f"class OOXML_API {cls.name}"
    lines += [heading, "{", "public:"]
    lines.append(f"    {cls.name}();")
    lines.append(f"    {cls.name}(const {cls.name}& other) = default;")
    lines.append(f"    {cls.name}& operator=(const {cls.name}& other) = default;")
    lines.append(f"    ~{cls.name}() override;" if cls.base is not None else f"    virtual ~{cls.name}();")
    lines.append("")
    lines.append("    bool ReadXML(wxXmlNode* node, XMLNSContext* context);")
    lines.append("    bool ReadXML(ooxml::dom::Node* node, XMLNSContext* context);")
    lines.append("    bool WriteXML(wxXmlNode*, XMLNSContext*) { return true; }")
    if cls.is_group:
        lines.append("    bool SetProperty(const wxString& name, wxXmlNode* node, XMLNSContext* context);")
        lines.append("    bool SetProperty(const wxString& name, ooxml::dom::Node* node, XMLNSContext* context);")
        lines.append("    bool SetProperty(const wxString& name, wxString value, XMLNSContext* context);")
        lines.append("    bool SetProperty(const wxString& name, const ooxml::dom::Text& value, XMLNSContext* context);")
        lines.append("    static bool HasProperty(const wxString& name, XMLNSContext* context);")
        lines.append("    bool GetProperty(const wxString&, wxXmlNode*, XMLNSContext*) { return true; }")
        lines.append("    bool GetProperty(const wxString&, wxString, XMLNSContext*) { return true; }")
    if cls.members or cls.any_base:
        lines.append("")
    for m in cls.members:
        lines += _accessor_declarations(cls, m)
    lines.append("")
    lines.append("private:")
    # One body per reader, compiled for both trees (see ReadXML in the source).
    lines.append("    template <class Node> bool ReadNode(Node* node, XMLNSContext* context);")
    if cls.is_group:
        lines.append("    template <class Node> bool TakeElement(const wxString& name, Node* node, XMLNSContext* context);")
        lines.append("    template <class Text> bool TakeAttribute(const wxString& name, const Text& value, XMLNSContext* context);")
    for m in cls.members:
        lines.append(f"    {m.kind.storage(cls, m)} m_{m.name};")
    lines.append(f"    {mask_declaration(cls)}")
    lines.append("};")
    return lines


def _ordered_for_declaration(schema: Schema) -> List[Class]:
    """Schema order, except that a base class comes before its derived classes."""
    done: Set[str] = set()
    out: List[Class] = []

    def visit(cls: Class) -> None:
        if cls.name in done:
            return
        if cls.base is not None and cls.base.schema is schema:
            visit(cls.base)
        done.add(cls.name)
        out.append(cls)

    for cls in schema.classes:
        visit(cls)
    return out


def emit_header(schema: Schema, model: Model) -> str:
    path = schema.header
    includes = {"ooxml/ooxml.h"}
    foreign: Dict[Schema, Set[str]] = {}
    for cls in schema.classes:
        if cls.base is not None and cls.base.schema is not schema:
            includes.add(cls.base.schema.header)
        for m in cls.members:
            if m.target is not None and m.target.schema is not schema:
                foreign.setdefault(m.target.schema, set()).add(m.target.name)
    out = [BANNER, f"// Classes of {schema.uri} (namespace map: see ooxml/namespaces.h).",
           f"#ifndef {guard(path)}", f"#define {guard(path)}", "",
           "#include <cstdint>", "#include <vector>", "", "#include <wx/any.h>", "#include <wx/string.h>", ""]
    out += [f'#include "{inc}"' for inc in sorted(includes)]
    out.append("")
    for other in sorted(foreign, key=lambda s: s.cpp_namespace):
        names = " ".join(f"class {n};" for n in sorted(foreign[other]))
        out.append(f"namespace {other.cpp_namespace} {{ {names} }}")
    if foreign:
        out.append("")
    out.append(f"namespace {schema.cpp_namespace}")
    out.append("{")
    out.append("")
    for cls in schema.classes:
        out.append(f"class {cls.name};")
    out.append("")
    for cls in _ordered_for_declaration(schema):
        out += _class_declaration(cls)
        out.append("")
    out.append(f"}} // namespace {schema.cpp_namespace}")
    out.append("")
    out.append(f"#endif // {guard(path)}")
    return "\n".join(out) + "\n"


# -- source -------------------------------------------------------------------------------

def _constructor(cls: Class) -> List[str]:
    inits = []
    for m in cls.members:
        init = m.kind.initializer(cls, m)
        if init is not None:
            inits.append(f"m_{m.name}({init})" if not init.startswith("{") else f"m_{m.name}{init}")
    inits.append("m_presence()" if cls.mask_bits > 64 else "m_presence(0)")
    lines = [f"{cls.name}::{cls.name}()"]
    for i, init in enumerate(inits):
        lines.append(("    : " if i == 0 else "      ") + init + ("," if i < len(inits) - 1 else ""))
    lines += ["{", "}"]
    return lines


def _destructor(cls: Class) -> List[str]:
    lines = [f"{cls.name}::~{cls.name}()", "{"]
    for m in cls.members:
        release = m.kind.release(m)
        if release is not None:
            lines.append(f"    {release}")
    lines.append("}")
    return lines


def _condition(cls: Class, m: Member, matcher: str, unmapped: str) -> str:
    cond = m.kind.match(cls, m, matcher, unmapped)
    if m.branch_guard:
        guard_text = " || ".join(f"({test(cls, b)})" for b in m.branch_guard)
        cond = f"({guard_text}) && {cond}"
    return cond


def _read_xml(cls: Class) -> List[str]:
    lines = ["template <class Node>", f"bool {cls.name}::ReadNode(Node* node, XMLNSContext* context)", "{"]
    attributes = cls.members_from(ATTRIBUTES)
    if attributes:
        lines.append("    for (AttributeReader attribute(node, context, NamespaceMap); attribute; attribute.Next())")
        lines.append("    {")
        for i, m in enumerate(attributes):
            cond = _condition(cls, m, "attribute", "attribute.Name()")
            lines.append(f"        {'if' if i == 0 else 'else if'} ({cond})")
            lines.append(f"        {{ {m.kind.read_statement(cls, m, 'attribute.Value()', 'attribute.Name()')} {mark(cls, m.bit)} }}")
        lines.append("    }")
    else:
        # Nothing to compare with, but a name of an unknown namespace is still logged.
        lines.append("    CheckAttributeNames(node, context, NamespaceMap);")
    for text in cls.members_from(CONTENT):
        lines.append(f"    if (!{text.kind.read_call(cls, text, 'node', '')})")
        lines.append("        return false;")
    elements = cls.members_from(CHILDREN)
    # Children are visited (pushed and popped) even without element members:
    # their declarations change the default namespace for what follows.
    lines.append("    for (ChildReader child(node, context, NamespaceMap); child; child.Next())")
    if elements:
        lines.append("    {")
        for i, m in enumerate(elements):
            cond = _condition(cls, m, "child", "child.Name()")
            lines.append(f"        {'if' if i == 0 else 'else if'} ({cond})")
            lines.append(f"        {{ {m.kind.read_statement(cls, m, 'child.Node()', 'child.Name()')} {mark(cls, m.bit)} }}")
        lines.append("    }")
    else:
        lines.append("        context->CheckName(child.Name(), NamespaceMap);")
    lines.append("    return true;")
    lines.append("}")
    lines.append("")
    lines += _overloads(cls.name, "bool", "ReadXML", "ReadNode", "", ["wxXmlNode* node", "ooxml::dom::Node* node"], "node")
    return lines


def _overloads(class_name: str, result: str, public: str, private: str, leading: str, params: List[str],
               argument: str) -> List[str]:
    """The public overloads, one per tree, that call the member template."""
    forward = f"{leading}{argument}, context" if leading else f"{argument}, context"
    head = "const wxString& name, " if leading else ""
    return [f"{result} {class_name}::{public}({head}{p}, XMLNSContext* context) {{ return {private}({forward}); }}"
            for p in params]


def _needs_matcher(members: List[Member]) -> bool:
    return any(m.kind.by_name for m in members)


def _group_operations(cls: Class) -> List[str]:
    lines: List[str] = []
    elements = cls.members_from(CHILDREN)
    attributes = cls.members_from(ATTRIBUTES)

    # SetProperty for an element: the first member that takes the name reads it.
    lines.append("template <class Node>")
    lines.append(f"bool {cls.name}::TakeElement(const wxString& name, Node* node, XMLNSContext* context)")
    lines.append("{")
    if elements:
        if _needs_matcher(elements):
            lines.append("    NameMatcher match(name, context, NamespaceMap);")
        for m in elements:
            lines.append(f"    if ({_condition(cls, m, 'match', 'name')})")
            lines.append("    {")
            lines.append(f"        {m.kind.read_statement(cls, m, 'node', 'name')}")
            lines.append(f"        {mark(cls, m.bit)}")
            lines.append("        return true;")
            lines.append("    }")
        lines.append("    return false;")
    elif attributes:
        # An attribute group has no elements: it maps the name and refuses it.
        lines += ["    (void)node;", "    context->MapNameSpace(name, NamespaceMap);", "    return false;"]
    else:
        lines += ["    (void)name;", "    (void)node;", "    (void)context;", "    return false;"]
    lines.append("}")
    lines.append("")
    lines += _overloads(cls.name, "bool", "SetProperty", "TakeElement", "name, ",
                        ["wxXmlNode* node", "ooxml::dom::Node* node"], "node")
    lines.append("")

    # SetProperty for an attribute.
    lines.append("template <class Text>")
    lines.append(f"bool {cls.name}::TakeAttribute(const wxString& name, const Text& value, XMLNSContext* context)")
    lines.append("{")
    if attributes:
        if _needs_matcher(attributes):
            lines.append("    NameMatcher match(name, context, NamespaceMap);")
        for m in attributes:
            lines.append(f"    if ({_condition(cls, m, 'match', 'name')})")
            lines.append("    {")
            lines.append(f"        {m.kind.read_statement(cls, m, 'value', 'name')}")
            lines.append(f"        {mark(cls, m.bit)}")
            lines.append("        return true;")
            lines.append("    }")
        lines.append("    return false;")
    else:
        lines += ["    (void)name;", "    (void)value;", "    (void)context;", "    return false;"]
    lines.append("}")
    lines.append("")
    lines += _overloads(cls.name, "bool", "SetProperty", "TakeAttribute", "name, ",
                        ["wxString value", "const ooxml::dom::Text& value"], "value")
    lines.append("")

    # HasProperty: would this group take that name?
    members = elements or attributes
    lines.append(f"bool {cls.name}::HasProperty(const wxString& name, XMLNSContext* context)")
    lines.append("{")
    if members:
        if _needs_matcher(members):
            lines.append("    NameMatcher match(name, context, NamespaceMap);")
        conds = [m.kind.match(cls, m, "match", "name") for m in members]
        lines.append("    return " + "\n        || ".join(conds) + ";")
    else:
        lines += ["    (void)name;", "    (void)context;", "    return false;"]
    lines.append("}")
    return lines


def _source_includes(schema: Schema, classes: List[Class]) -> List[str]:
    headers = {schema.header}
    for cls in classes:
        for m in cls.members:
            if m.target is not None:
                headers.add(m.target.schema.header)
    return sorted(headers)


def emit_sources(schema: Schema) -> Dict[str, str]:
    """One or more sources for the schema's classes: {path: text}."""
    classes = schema.classes
    parts = max(1, math.ceil(len(classes) / CLASSES_PER_SOURCE))
    size = math.ceil(len(classes) / parts)
    out = {}
    for part in range(parts):
        chunk = classes[part * size:(part + 1) * size]
        suffix = f"_{part + 1}" if parts > 1 else ""
        path = f"generated/ooxml/{schema.family}/{schema.key}{suffix}.cpp"
        lines = [BANNER]
        lines += [f'#include "{h}"' for h in _source_includes(schema, chunk)]
        lines += ['#include "ooxml/constants/' + schema.key + '_names.h"', '#include "ooxml/namespaces.h"',
                  '#include "ooxml/ooxml_read.h"', "", "#include <limits>", "", "using namespace ooxml_detail;", "",
                  f"namespace {schema.cpp_namespace}", "{", ""]
        for cls in chunk:
            lines += _constructor(cls)
            lines.append("")
            lines += _destructor(cls)
            lines.append("")
            lines += _read_xml(cls)
            lines.append("")
            accessors = _accessor_definitions(cls)
            if accessors:
                lines += accessors
                lines.append("")
            if cls.is_group:
                lines += _group_operations(cls)
                lines.append("")
        lines.append(f"}} // namespace {schema.cpp_namespace}")
        out[path] = "\n".join(lines) + "\n"
    return out


# -- constants and maps ---------------------------------------------------------------

def emit_constants(schema: Schema) -> Dict[str, str]:
    """Name constants of one schema, internal to the library."""
    names = sorted(schema.names.items(), key=lambda kv: kv[1])
    h_path = f"generated/ooxml/constants/{schema.key}_names.h"
    include_guard = guard(f"ooxml/constants/{schema.key}_names.h")
    header = [BANNER, f"// Name and enumeration constants of {schema.uri}, in mapped form.",
              "// Internal to the library.", f"#ifndef {include_guard}", f"#define {include_guard}", "",
              "#include <wx/string.h>", "", f"namespace {schema.cpp_namespace}", "{", ""]
    header += [f"extern const wxString {ident};" for _, ident in names]
    header += ["", f"}} // namespace {schema.cpp_namespace}", "", f"#endif // {include_guard}"]
    source = [BANNER, f'#include "ooxml/constants/{schema.key}_names.h"', "", f"namespace {schema.cpp_namespace}", "{", ""]
    source += [f"const wxString {ident} = wxString::FromUTF8({string_literal(text)});" for text, ident in names]
    source += ["", f"}} // namespace {schema.cpp_namespace}"]
    return {h_path: "\n".join(header) + "\n", f"generated/ooxml/constants/{schema.key}_names.cpp": "\n".join(source) + "\n"}


def emit_namespaces(model: Model) -> Dict[str, str]:
    header = [BANNER, "// The namespace map of every schema, and the table of bound schemas.",
              "#ifndef OOXML_OOXML_NAMESPACES_H", "#define OOXML_OOXML_NAMESPACES_H", "",
              "#include <cstddef>", "", '#include "ooxml/ooxml.h"', ""]
    for schema in model.schemas:
        header.append(f"namespace {schema.cpp_namespace} {{ extern OOXML_API const XMLNSMap NamespaceMap; }}")
    header += ["", "// One row per schema whose namespace map exists: its URI, the prefix under",
               "// which other maps know it (empty if none) and whether it has classes.",
               "struct OOXMLSchemaInfo", "{", "    const char* uri;", "    const char* prefix;",
               "    const XMLNSMap* map;", "    bool hasClasses;", "};",
               "extern OOXML_API const OOXMLSchemaInfo OOXMLSchemas[];",
               "extern OOXML_API const std::size_t OOXMLSchemaCount;", "",
               "#endif // OOXML_OOXML_NAMESPACES_H"]
    source = [BANNER, '#include "ooxml/namespaces.h"', "", "#include <initializer_list>", "#include <utility>", "",
              "namespace", "{", "",
              "// Inserts the pairs in order into an empty map; a URI already present is kept.",
              "XMLNSMap MakeMap(std::initializer_list<std::pair<const char*, const char*>> pairs)", "{",
              "    XMLNSMap map;", "    for (const auto& pair : pairs)",
              "        map.insert(std::make_pair(wxString::FromUTF8(pair.first), wxString::FromUTF8(pair.second)));",
              "    return map;", "}", "", "} // namespace", ""]
    for schema in model.schemas:
        pairs = ", ".join(f"{{{string_literal(u)}, {string_literal(p)}}}" for u, p in schema.map.items())
        source.append(f"const XMLNSMap {schema.cpp_namespace}::NamespaceMap = MakeMap({{{pairs}}});")
    source += ["", "const OOXMLSchemaInfo OOXMLSchemas[] = {"]
    for schema in model.schemas:
        source.append(f"    {{{string_literal(schema.uri)}, {string_literal(schema.prefix or '')}, "
                      f"&{schema.cpp_namespace}::NamespaceMap, {'true' if schema.family else 'false'}}},")
    source += ["};", "", "const std::size_t OOXMLSchemaCount = sizeof(OOXMLSchemas) / sizeof(OOXMLSchemas[0]);"]
    return {"generated/ooxml/namespaces.h": "\n".join(header) + "\n",
            "generated/ooxml/namespaces.cpp": "\n".join(source) + "\n"}


def emit_aliases(model: Model) -> str:
    out = [BANNER, "// Short names for the schema namespaces: ooxml::sml::CT_Worksheet.",
           "#ifndef OOXML_OOXML_ALIASES_H", "#define OOXML_OOXML_ALIASES_H", "", "namespace ooxml", "{"]
    for schema in model.class_schemas():
        out.append(f"namespace {schema.key} = ::{schema.cpp_namespace};")
    out += ["} // namespace ooxml", "", "#endif // OOXML_OOXML_ALIASES_H"]
    # Each aliased namespace must have been declared: declare them all first.
    decls = [f"namespace {s.cpp_namespace} {{}}" for s in model.class_schemas()]
    index = out.index("namespace ooxml")
    out[index:index] = decls + [""]
    return "\n".join(out) + "\n"


def emit_umbrella(model: Model) -> str:
    out = [BANNER, "// Everything public of the library.", "#ifndef OOXML_ALL_H", "#define OOXML_ALL_H", "",
           '#include "ooxml/ooxml.h"', '#include "ooxml/namespaces.h"', '#include "ooxml/aliases.h"']
    out += [f'#include "{s.header}"' for s in model.class_schemas()]
    out += ["", "#endif // OOXML_ALL_H"]
    return "\n".join(out) + "\n"


def emit_source_list(paths: List[str], headers: List[str]) -> str:
    out = ["# Generated by tools/ooxmlgen. Do not edit.", "set(OOXML_GENERATED_SOURCES"]
    out += [f"    {p}" for p in sorted(paths)]
    out += [")", "set(OOXML_GENERATED_HEADERS"]
    out += [f"    {h}" for h in sorted(headers)]
    out.append(")")
    return "\n".join(out) + "\n"


def emit_all(model: Model) -> Dict[str, str]:
    files: Dict[str, str] = {}
    sources: List[str] = ["generated/ooxml/namespaces.cpp"]
    headers: List[str] = ["generated/ooxml/namespaces.h", "generated/ooxml/all.h", "generated/ooxml/aliases.h"]
    for schema in model.class_schemas():
        header_path = f"generated/{schema.header}"
        files[header_path] = emit_header(schema, model)
        headers.append(header_path)
        for path, text in emit_sources(schema).items():
            files[path] = text
            sources.append(path)
    for schema in model.schemas:
        for path, text in emit_constants(schema).items():
            files[path] = text
            if path.endswith(".cpp"):
                sources.append(path)
    files.update(emit_namespaces(model))
    files["generated/ooxml/all.h"] = emit_umbrella(model)
    files["generated/ooxml/aliases.h"] = emit_aliases(model)
    files["generated/library.cmake"] = emit_source_list(sources, headers)
    return files
