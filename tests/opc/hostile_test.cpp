// Hostile parts read through a package on both reading paths: each ends in the same one-line refusal naming the
// file, the part and the limit or fault, or reads correctly; none crashes, hangs or needs much memory (the files
// are made here, small, and the suite runs under the sanitizers too).
#include <wx/log.h>

#include "ooxml/aliases.h"
#include "ooxml/spreadsheetml/sml.h"
#include "package_support.h"

using namespace package_test;

namespace
{
const std::string kSheet = "<worksheet xmlns='" + kSml + "'>";

std::string Repeat(const std::string& text, std::size_t times)
{
    std::string out;
    out.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        out += text;
    return out;
}

// "ok <dimension>" or the error of reading /s.xml (a worksheet) with the limits, on one path.
std::string Read(const std::string& xml, bool wx, const opc::Limits& limits = opc::Limits())
{
    wxLogNull quiet;
    opc::ReadOptions options;
    options.wxWidgetsParser = wx;
    opc::Package package(limits, options);
    opc::Error error;
    if (!Open(package, {{"[Content_Types].xml", Types({{"/s.xml", kWorksheetType}})}, {"s.xml", xml}}, &error))
        return Utf8(error.ToString());
    opc::PartRoot root;
    if (!opc::ReadPartRoot(package, "/s.xml", &root, &error))
        return Utf8(error.ToString());
    const ooxml::sml::CT_Worksheet* sheet = root.Get<ooxml::sml::CT_Worksheet>();
    return std::string("ok") + (sheet->GetDimension() ? " " + Utf8(sheet->GetDimension()->GetRef()) : "");
}

// Both paths give `expected` (a refusal is compared from its start, "test.docx: /s.xml: ...").
void ExpectBoth(const std::string& xml, const std::string& expected, const opc::Limits& limits = opc::Limits())
{
    for (const bool wx : {false, true})
    {
        const std::string result = Read(xml, wx, limits);
        EXPECT_EQ(result.substr(0, expected.size()), expected) << (wx ? "wxWidgets path" : "fast path");
        EXPECT_EQ(result.find('\n'), std::string::npos);
    }
}
} // namespace

TEST(Hostile, NestingHidingTricksAndFalseRefusals)
{
    const std::string deep = Repeat("<a>", 100000) + Repeat("</a>", 100000);
    // What blinded a scan of the bytes: the parser's own events count the depth.
    ExpectBoth(kSheet + deep + "</worksheet>", "test.docx: /s.xml: XML nested deeper than 256 elements");
    ExpectBoth("<!DOCTYPE x SYSTEM \"x><!--\">" + kSheet + deep + "</worksheet>",
               "test.docx: /s.xml: XML has a document type declaration");
    // UTF-16: deep nesting refused, many shallow tags read.
    auto utf16 = [](const std::string& ascii) {
        std::string out = "\xFF\xFE";
        for (char c : ascii)
            out += std::string{c, '\0'};
        return out;
    };
    ExpectBoth(utf16(kSheet + Repeat("<a>", 300) + "<!--" + Repeat("</a>", 300) + "</worksheet>"),
               "test.docx: /s.xml: XML nested deeper than 256 elements");
    ExpectBoth(utf16(kSheet + "<dimension ref='A1'/><sheetData>" + Repeat("<row/>", 3000) + "</sheetData></worksheet>"),
               "ok A1");
}

TEST(Hostile, BoundedWorkAndMemory)
{
    // Text in many short lines: linear on the fast path; wxWidgets' merging would copy it quadratically.
    const std::string lines = kSheet + "<dimension ref='" + Repeat("a\n", 1 << 19) + "'/><sheetData><row><c><v>" +
                              Repeat("1\n", 1 << 19) + "</v></c></row></sheetData></worksheet>";
    EXPECT_EQ(Read(lines, false).substr(0, 4), "ok a");
    const std::string merging = "test.docx: /s.xml: XML text would copy more than 1073741824 bytes";
    EXPECT_EQ(Read(lines, true).substr(0, merging.size()), merging);
    // Attributes on one element, elements and attributes of a part, each under its own limit.
    opc::Limits limits;
    limits.maxElements = 1000;
    limits.maxAttributes = 2000;
    limits.maxCopiedDeclarations = 100000;
    std::string attributes;
    for (int i = 0; i < 5000; ++i)
        attributes += " a" + std::to_string(i) + "='1'";
    ExpectBoth(kSheet + "<sheetData><row" + attributes + "/></sheetData></worksheet>",
               "test.docx: /s.xml: XML element <row> has more than 4096 attributes (limit maxAttributesPerElement)");
    ExpectBoth(kSheet + "<sheetData><row>" + Repeat("<c/>", 2000) + "</row></sheetData></worksheet>",
               "test.docx: /s.xml: XML has more than 1000 elements (limit maxElements)", limits);
    ExpectBoth(kSheet + "<sheetData>" + Repeat("<row r='1' s='2' ht='3'/>", 900) + "</sheetData></worksheet>",
               "test.docx: /s.xml: XML has more than 2000 attributes (limit maxAttributes)", limits);
    // Markup compatibility copying many declarations onto many elements counts them as attributes.
    std::string declarations;
    for (int i = 0; i < 600; ++i)
        declarations += " xmlns:n" + std::to_string(i) + "='urn:n" + std::to_string(i) + "'";
    ExpectBoth("<worksheet xmlns='" + kSml + "' xmlns:mc='" + kMcUri + "'><sheetData><mc:AlternateContent" +
                   declarations + "><mc:Fallback>" + Repeat("<row/>", 500) + "</mc:Fallback></mc:AlternateContent>" +
                   "</sheetData></worksheet>",
               "test.docx: /s.xml: markup compatibility would copy more than 100000 namespace declarations "
               "(limit maxCopiedDeclarations)",
               limits);
}

TEST(Hostile, NoSilentlyWrongResults)
{
    // Entities and attribute defaults come only with a document type declaration, which is refused.
    ExpectBoth("<!DOCTYPE worksheet [<!ENTITY who 'ACME'>]>" + kSheet + "<dimension ref='&who;'/></worksheet>",
               "test.docx: /s.xml: XML has a document type declaration");
    ExpectBoth("<!DOCTYPE worksheet [<!ATTLIST dimension ref CDATA 'Z9'>]>" + kSheet + "<dimension/></worksheet>",
               "test.docx: /s.xml: XML has a document type declaration");
    ExpectBoth("<?xml version='1.0' encoding='x-made-up'?>" + kSheet + "</worksheet>",
               "test.docx: /s.xml: XML in the encoding x-made-up, which is not read");
    ExpectBoth("<?xml version='1.0' encoding='ISO-8859-1'?>" + kSheet + "<dimension ref='\xE9'/></worksheet>",
               "ok \xC3\xA9");
    ExpectBoth("<worksheet xmlns='" + kSml + "' xmlns:p='urn:p' xmlns:q='urn:p'><dimension p:ref='A' q:ref='B'/>"
               "</worksheet>",
               "test.docx: /s.xml: duplicate attribute: p:ref and q:ref");
    // A root element that is not what the content type holds; Strict spelling is the same root.
    ExpectBoth("<sst xmlns='" + kSml + "'/>",
               "test.docx: /s.xml: root element sst of " + kSml + " is not what the content type holds (worksheet)");
    ExpectBoth("<w:document xmlns:w='urn:w'/>",
               "test.docx: /s.xml: root element document of urn:w is not what the content type holds (worksheet)");
    ExpectBoth("<worksheet xmlns='http://purl.oclc.org/ooxml/spreadsheetml/main'><dimension ref='B2'/></worksheet>",
               "ok B2");
}
