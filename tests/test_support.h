// Helpers of the unit tests: documents from text, read the way a host reads them; a capture of the wxWidgets log.
#ifndef OOXML_TESTS_TEST_SUPPORT_H
#define OOXML_TESTS_TEST_SUPPORT_H

#include <algorithm>
#include <memory>
#include <vector>
#include <gtest/gtest.h>
#include <wx/any.h>
#include <wx/log.h>
#include <wx/xml/xml.h>
#include "ooxml/ooxml.h"

namespace ooxml_test
{
// The namespace URI of a usual prefix (x SpreadsheetML, c charts, d diagrams, o Office VML...: test_support.cpp).
wxString Uri(const char* usualPrefix);
// " xmlns:prefix='uri'" (" xmlns='uri'" for an empty prefix), with the URI of a usual prefix.
wxString Xmlns(const char* prefix, const char* usualPrefix);
// `element` with every usual prefix declared on its first tag, and no default namespace.
wxString Ns(const wxString& element);
// Parses XML text; fails the test (and returns null) if it does not parse.
std::unique_ptr<wxXmlDocument> ParseXml(const wxString& text);

// Reads Ns(text) the way a host does: parse, context on the document, ReadXML of the root.
template <class T>
struct Read
{
    explicit Read(const wxString& text) : document(ParseXml(Ns(text)))
    {
        context.reset(document ? new XMLNSContext(document.get()) : nullptr);
        ok = document && object->ReadXML(document->GetRoot(), context.get());
    }
    std::unique_ptr<wxXmlDocument> document;
    std::unique_ptr<XMLNSContext> context;
    std::unique_ptr<T> object{new T};
    bool ok = false;
    T* operator->() const { return object.get(); }
};

// Captures the records of the wxWidgets log (every level) while it lives.
struct LogCapture : wxLog
{
    struct Record { wxLogLevel level; wxString message; std::string function, file; }; // function, file: the caller
    std::vector<Record> records;
    wxLog* const m_previous = SetActiveTarget(this);
    const wxLogLevel m_level = GetLogLevel();
    LogCapture() { SetLogLevel(wxLOG_Max); }
    ~LogCapture() override { SetActiveTarget(m_previous); SetLogLevel(m_level); }
    std::size_t Count(const wxString& message) const
    {
        return std::count_if(records.begin(), records.end(), [&](const Record& r) { return r.message == message; });
    }
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) override
    {
        records.push_back({level, message, info.func ? info.func : "", info.filename ? info.filename : ""});
    }
};
} // namespace ooxml_test

#endif // OOXML_TESTS_TEST_SUPPORT_H
