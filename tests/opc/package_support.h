// Helpers of the package-layer tests: packages built in memory, results as text, XML in and out.
#ifndef OOXML_TESTS_PACKAGE_SUPPORT_H
#define OOXML_TESTS_PACKAGE_SUPPORT_H

#include <gtest/gtest.h>
#include <wx/mstream.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>
#include <wx/zipstrm.h>

#include "ooxml/opc/parts.h" // and the package

namespace package_test
{
namespace opc = ooxml::opc;
typedef std::vector<std::pair<std::string, std::string>> Entries;
const char* const kWorksheetType = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const std::string kSml = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const std::string kMcUri = "http://schemas.openxmlformats.org/markup-compatibility/2006";

inline std::string Utf8(const wxString& text) { return std::string(text.utf8_str()); }
// "ok", or the error as one line.
inline std::string Result(bool ok, const opc::Error& error) { return ok ? "ok" : Utf8(error.ToString()); }
// A ZIP archive (deflated) of the entries, in order.
inline std::string Zip(const Entries& entries)
{
    wxMemoryOutputStream memory;
    {
        wxZipOutputStream zip(memory);
        for (const auto& entry : entries)
            if (zip.PutNextEntry(wxString::FromUTF8(entry.first.c_str())))
                zip.Write(entry.second.data(), entry.second.size());
    }
    std::string bytes(memory.GetLength(), '\0');
    memory.CopyTo(&bytes[0], bytes.size());
    return bytes;
}
// Writes `value` little-endian into `width` bytes at `at`.
inline void Poke(std::string& bytes, std::size_t at, std::uint32_t value, int width = 4)
{
    for (int i = 0; i < width; ++i)
        bytes[at + i] = char((value >> (8 * i)) & 0xFF);
}
// The central directory record of `name` repeated `copies` more times; the end record counts them.
inline std::string RepeatRecord(std::string zip, const std::string& name, std::size_t copies)
{
    const std::size_t at = zip.rfind(name) - 46, end = zip.rfind("PK\5\6");
    auto word = [&](std::size_t i) { return std::size_t((unsigned char)zip[i] | (unsigned char)zip[i + 1] << 8); };
    const std::size_t length = 46 + word(at + 28) + word(at + 30) + word(at + 32);
    std::string records;
    for (std::size_t i = 0; i < copies; ++i)
        records += zip.substr(at, length);
    zip.insert(end, records);
    for (int field : {8, 10})
        Poke(zip, end + records.size() + field, word(end + records.size() + field) + copies, 2);
    Poke(zip, end + records.size() + 12, std::uint32_t(zip.rfind("PK\5\6") - zip.find("PK\1\2")));
    return zip;
}
// A content types stream: Default "rels" and "xml", then (part name, type) overrides.
inline std::string Types(const Entries& overrides = Entries())
{
    std::string text = "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'><Default Extension="
                       "'rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/><Default "
                       "Extension='xml' ContentType='application/xml'/>";
    for (const auto& o : overrides)
        text += "<Override PartName='" + o.first + "' ContentType='" + o.second + "'/>";
    return text + "</Types>";
}
// A relationships part of (id, type, target[, target mode]) rows.
inline std::string Rels(const std::vector<std::vector<std::string>>& rows)
{
    std::string text = "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>";
    for (const auto& r : rows)
        text += "<Relationship Id='" + r[0] + "' Type='" + r[1] + "' Target='" + r[2] + "'" +
                (r.size() > 3 ? " TargetMode='" + r[3] + "'" : "") + "/>";
    return text + "</Relationships>";
}
// Opens the bytes, or a ZIP of the entries, as "test.docx".
inline bool OpenBytes(opc::Package& package, const std::string& bytes, opc::Error* error)
{
    return package.OpenMemory(bytes.data(), bytes.size(), "test.docx", error);
}
inline bool Open(opc::Package& package, const Entries& entries, opc::Error* error)
{
    return OpenBytes(package, Zip(entries), error);
}
// XML text parsed; the document serialised again, without declaration and final newline.
inline bool Parse(const std::string& text, wxXmlDocument* document)
{
    wxStringInputStream input(wxString::FromUTF8(text.c_str()));
    return document->Load(input) && document->GetRoot();
}
inline std::string Serialise(const wxXmlDocument& document)
{
    wxStringOutputStream out;
    document.Save(out, wxXML_NO_INDENTATION);
    const std::string text = Utf8(out.GetString());
    const std::size_t begin = text.find('<', text.find("?>"));
    return text.substr(begin, text.find_last_not_of("\r\n") + 1 - begin);
}
} // namespace package_test
#endif // OOXML_TESTS_PACKAGE_SUPPORT_H
