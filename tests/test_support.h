// Helpers of the hand-written unit tests: documents from text, read the way a host reads them, and a capture
// of the wxWidgets log.
#ifndef OOXML_TESTS_TEST_SUPPORT_H
#define OOXML_TESTS_TEST_SUPPORT_H

#include <memory>
#include <vector>
#include <gtest/gtest.h>
#include <wx/any.h>
#include <wx/log.h>
#include <wx/xml/xml.h>

#include "ooxml/ooxml.h"

namespace ooxml_test
{

// Namespace URIs of the test documents.
namespace uri
{
const char* const sml = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const char* const chart = "http://schemas.openxmlformats.org/drawingml/2006/chart";
const char* const rel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const vml = "urn:schemas-microsoft-com:vml";
const char* const office = "urn:schemas-microsoft-com:office:office";
} // namespace uri

// " xmlns:p='uri'" (" xmlns='uri'" for an empty prefix).
wxString Xmlns(const char* prefix, const char* namespaceUri);

// `element` with the usual prefixes declared on its first tag and no default namespace: x (SpreadsheetML), w, m,
// r, a, c, cx, d (diagrams), p, v, o, vt, cp (core properties), dc, dcterms, wp, pic, dsp, a14, c15, t (content
// types), cu (custom properties).
wxString Ns(const wxString& element);

// Parses XML text; fails the test (and returns null) if it does not parse.
std::unique_ptr<wxXmlDocument> ParseXml(const wxString& text);

// Reads Ns(text) the way a host does: parse, context on the document, ReadXML of the root.
template <class T>
struct Reading
{
    std::unique_ptr<wxXmlDocument> document;
    std::unique_ptr<XMLNSContext> context;
    std::unique_ptr<T> object{new T};
    bool ok = false;
};
template <class T>
Reading<T> Read(const wxString& text)
{
    Reading<T> r;
    r.document = ParseXml(Ns(text));
    if (r.document)
    {
        r.context.reset(new XMLNSContext(r.document.get()));
        r.ok = r.object->ReadXML(r.document->GetRoot(), r.context.get());
    }
    return r;
}

// Captures the records of the wxWidgets log (every level) while it lives.
class LogCapture : public wxLog
{
public:
    struct Record
    {
        wxLogLevel level;
        wxString message;
        std::string function, file;
    };
    LogCapture() : m_previous(SetActiveTarget(this)), m_level(GetLogLevel()) { SetLogLevel(wxLOG_Max); }
    ~LogCapture() override { SetActiveTarget(m_previous); SetLogLevel(m_level); }
    std::vector<Record> records;
    std::size_t Count(const wxString& message) const;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) override
    {
        records.push_back({level, message, info.func ? info.func : "", info.filename ? info.filename : ""});
    }

private:
    wxLog* m_previous;
    wxLogLevel m_level;
};

} // namespace ooxml_test

#endif // OOXML_TESTS_TEST_SUPPORT_H
