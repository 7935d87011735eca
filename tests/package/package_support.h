// Helpers of the package-layer tests: packages built in memory.
#ifndef OOXML_TESTS_PACKAGE_SUPPORT_H
#define OOXML_TESTS_PACKAGE_SUPPORT_H

#include <string>
#include <utility>
#include <vector>

#include <wx/mstream.h>
#include <wx/xml/xml.h>
#include <wx/sstream.h>
#include <wx/zipstrm.h>

#include "ooxml/opc/package.h"

namespace package_test
{

typedef std::vector<std::pair<std::string, std::string>> Entries;

// A ZIP archive of the entries, in order.
inline std::string Zip(const Entries& entries)
{
    wxMemoryOutputStream memory;
    {
        wxZipOutputStream zip(memory);
        for (const auto& entry : entries)
        {
            zip.PutNextEntry(wxString::FromUTF8(entry.first.c_str()));
            zip.Write(entry.second.data(), entry.second.size());
        }
    }
    std::string bytes(memory.GetLength(), '\0');
    memory.CopyTo(&bytes[0], bytes.size());
    return bytes;
}

const char* const kRelationshipsType = "application/vnd.openxmlformats-package.relationships+xml";
const char* const kWorksheetType = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const char* const kDocumentType = "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml";
const char* const kOfficeDocument = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";

// A content types stream: Default "rels" and "xml", and the overrides given
// as (part name, content type).
inline std::string Types(const Entries& overrides = Entries())
{
    std::string text = "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
                       "<Default Extension='rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/>"
                       "<Default Extension='xml' ContentType='application/xml'/>";
    for (const auto& o : overrides)
        text += "<Override PartName='" + o.first + "' ContentType='" + o.second + "'/>";
    return text + "</Types>";
}

// A relationships part of (id, type, target[, External]) rows.
inline std::string Rels(const std::vector<std::vector<std::string>>& rows)
{
    std::string text = "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>";
    for (const auto& r : rows)
        text += "<Relationship Id='" + r[0] + "' Type='" + r[1] + "' Target='" + r[2] + "'" +
                (r.size() > 3 ? " TargetMode='" + r[3] + "'" : std::string()) + "/>";
    return text + "</Relationships>";
}

inline bool Open(ooxml::opc::Package& package, const Entries& entries, ooxml::opc::Error* error)
{
    const std::string bytes = Zip(entries);
    return package.OpenMemory(bytes.data(), bytes.size(), "test.docx", error);
}

inline std::string Utf8(const wxString& text)
{
    return std::string(text.utf8_str());
}

// Parses XML text into a document.
inline bool Parse(const std::string& text, wxXmlDocument* document)
{
    wxStringInputStream input(wxString::FromUTF8(text.c_str()));
    return document->Load(input) && document->GetRoot();
}

// The document serialised again (for comparing the effect of preprocessing).
inline std::string Serialise(const wxXmlDocument& document)
{
    wxStringOutputStream out;
    document.GetRoot() ? document.Save(out, wxXML_NO_INDENTATION) : false;
    std::string text = Utf8(out.GetString());
    const std::size_t end = text.find("?>");
    if (end != std::string::npos)
        text = text.substr(text.find('<', end));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

} // namespace package_test

#endif
