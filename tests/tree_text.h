// The typed tree and the preprocessing's figures as text, to compare two reads of one part (the reading paths'
// differential test and fuzz target).
#ifndef OOXML_TESTS_TREE_TEXT_H
#define OOXML_TESTS_TREE_TEXT_H

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "ooxml/opc/markup.h"
#include "ooxml/traversal/traversal.h"

namespace tree_text
{
namespace traversal = ooxml::traversal;

// Flattens a tree to one line per member: member name, [index], presence, kind, XML name, then " = " and the value
// (type letter, exact text), the child's class and "{" (its members follow, then "}"), "absent", or "#n" for the
// length of an array once its last item is reported.  Given `expected` (another tree flattened), it compares instead
// of recording, line by line, and keeps the first difference with the path where it is; the tree is then never held
// twice as text, and the lines need no path of their own (they would make the text several times longer).
class Flattener : public traversal::Visitor
{
public:
    std::string text;              // recording: the lines
    const std::string* expected{}; // comparing: the lines to compare with
    std::size_t at = 0;            // comparing: how far they agree
    std::string difference;        // comparing: the first differing line, both ways

    void Run(const traversal::Node& node)
    {
        Visit(node, *this);
        CloseArray();
        if (expected && difference.empty() && at != expected->size())
            difference = "at the end\n  fast: " + expected->substr(at, expected->find('\n', at) - at) +
                         "\n  wx:   (tree ends)";
    }
    void OnValue(const traversal::Member& m, const wxAny& value) override
    {
        Begin(m);
        line += " = ";
        AppendValue(value);
        End();
    }
    void OnObject(const traversal::Member& m, const traversal::Node& child) override
    {
        Begin(m);
        line += " : ";
        line += child.info->fullName;
        line += " {";
        End();
        const std::size_t pathSize = path.size();
        path += '/';
        path += m.name;
        if (m.repeated)
            path += "[" + std::to_string(m.index) + "]";
        arrays.emplace_back(nullptr, 0);
        Visit(child, *this);
        CloseArray();
        arrays.pop_back();
        path.resize(pathSize);
        line = "}";
        End();
    }
    void OnAbsentObject(const traversal::Member& m) override
    {
        Begin(m);
        line += " absent";
        End();
    }

private:
    std::string path, line;
    // Per open object: the array member being reported (its name) and its items so far.
    std::vector<std::pair<const char*, std::size_t>> arrays{{nullptr, 0}};

    void Begin(const traversal::Member& m)
    {
        // Items of one array come in a row: another member ends the array, and its length is a line of its own.
        auto& open = arrays.back();
        if (open.first && (!m.repeated || m.index == 0 || std::strcmp(open.first, m.name) != 0))
            CloseArray();
        if (m.repeated)
            arrays.back() = {m.name, m.index + 1};
        line = m.name;
        if (m.repeated)
            line += "[" + std::to_string(m.index) + "]";
        line += m.present ? " +" : " -";
        line += char('0' + int(m.kind));
        line += ' ';
        line += m.xml;
    }
    void CloseArray()
    {
        auto& open = arrays.back();
        if (!open.first)
            return;
        line = open.first + (" #" + std::to_string(open.second));
        open = {nullptr, 0};
        End();
    }
    void End()
    {
        line += '\n';
        if (!expected)
            return void(text += line);
        if (!difference.empty())
            return;
        if (expected->compare(at, line.size(), line) == 0)
            return void(at += line.size());
        const std::size_t end = expected->find('\n', at);
        difference = "in " + (path.empty() ? "/" : path) + "\n  fast: " +
                     (at < expected->size() ? expected->substr(at, end - at) : "(tree ends)") + "\n  wx:   " +
                     line.substr(0, line.size() - 1);
    }
    void AppendValue(const wxAny& value)
    {
        char buffer[40];
        if (value.IsNull())
            line += "null";
        else if (value.CheckType<bool>())
            line += value.As<bool>() ? "b1" : "b0";
        else if (value.CheckType<long long>())
            std::snprintf(buffer, sizeof buffer, "i%lld", value.As<long long>()), line += buffer;
        else if (value.CheckType<unsigned long long>())
            std::snprintf(buffer, sizeof buffer, "u%llu", value.As<unsigned long long>()), line += buffer;
        else if (value.CheckType<double>())
            std::snprintf(buffer, sizeof buffer, "d%.17g", value.As<double>()), line += buffer;
        else if (value.CheckType<wxString>())
        {
            // Every character outside printable ASCII (and the backslash) as its code: nothing is lost or merged.
            line += 's';
            for (wxUniChar c : value.As<wxString>())
                if (c.GetValue() >= 0x20 && c.GetValue() < 0x7F && c != '\\')
                    line += char(c.GetValue());
                else
                    std::snprintf(buffer, sizeof buffer, "\\u{%X}", unsigned(c.GetValue())), line += buffer;
        }
        else
            line += "?unknown type";
    }
};

// What the preprocessing did, one figure after another.
inline std::string StatsText(const ooxml::opc::PrepareStats& s)
{
    return "strict " + std::to_string(s.strict) + " alternate " + std::to_string(s.alternateContent) + " choices " +
           std::to_string(s.choices) + " fallbacks " + std::to_string(s.fallbacks) + " recovered " +
           std::to_string(s.recovered) + " ignored " + std::to_string(s.ignoredElements) + "/" +
           std::to_string(s.ignoredAttributes) + " unwrapped " + std::to_string(s.unwrapped);
}
} // namespace tree_text

#endif // OOXML_TESTS_TREE_TEXT_H
