// Helpers shared by the hand-written and the generated tests.
#ifndef OOXML_TESTS_TEST_SUPPORT_H
#define OOXML_TESTS_TEST_SUPPORT_H

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/any.h>
#include <wx/log.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>

#include "ooxml/ooxml.h"

namespace ooxml_test
{

// Namespace URIs of the test documents.
namespace uri
{
const char* const sml = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const char* const wml = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";
const char* const pml = "http://schemas.openxmlformats.org/presentationml/2006/main";
const char* const dml = "http://schemas.openxmlformats.org/drawingml/2006/main";
const char* const chart = "http://schemas.openxmlformats.org/drawingml/2006/chart";
const char* const chartex = "http://schemas.microsoft.com/office/drawing/2014/chartex";
const char* const dgm = "http://schemas.openxmlformats.org/drawingml/2006/diagram";
const char* const math = "http://schemas.openxmlformats.org/officeDocument/2006/math";
const char* const rel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const vml = "urn:schemas-microsoft-com:vml";
const char* const office = "urn:schemas-microsoft-com:office:office";
const char* const excel = "urn:schemas-microsoft-com:office:excel";
const char* const word = "urn:schemas-microsoft-com:office:word";
const char* const p14 = "http://schemas.microsoft.com/office/powerpoint/2010/main";
const char* const p15 = "http://schemas.microsoft.com/office/powerpoint/2012/main";
const char* const c15 = "http://schemas.microsoft.com/office/drawing/2012/chart";
const char* const a14 = "http://schemas.microsoft.com/office/drawing/2010/main";
const char* const wp = "http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing";
const char* const xdr = "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing";
const char* const am3d = "http://schemas.microsoft.com/office/drawing/2017/model3d";
const char* const dc = "http://purl.org/dc/elements/1.1/";
const char* const dcterms = "http://purl.org/dc/terms/";
const char* const core = "http://schemas.openxmlformats.org/package/2006/metadata/core-properties";
const char* const extended = "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties";
const char* const custom = "http://schemas.openxmlformats.org/officeDocument/2006/custom-properties";
const char* const vt = "http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes";
const char* const bibliography = "http://schemas.openxmlformats.org/officeDocument/2006/bibliography";
const char* const sl = "http://schemas.openxmlformats.org/schemaLibrary/2006/main";
} // namespace uri

// "xmlns:p='uri'" for building test documents.
inline wxString Xmlns(const char* prefix, const char* namespaceUri)
{
    return wxString::Format(" xmlns%s%s='%s'", *prefix ? ":" : "", prefix, namespaceUri);
}

// Parses XML text; fails the test (and returns null) if it does not parse.
inline std::unique_ptr<wxXmlDocument> ParseXml(const wxString& text)
{
    wxStringInputStream input(text);
    std::unique_ptr<wxXmlDocument> document(new wxXmlDocument);
    wxLogNull quiet; // wx logs its own parse errors
    if (!document->Load(input) || !document->IsOk())
    {
        ADD_FAILURE() << "XML does not parse: " << text.utf8_str();
        return nullptr;
    }
    return document;
}

// A document, its context and the result of reading its root into T.
template <class T>
struct Reading
{
    std::unique_ptr<wxXmlDocument> document;
    std::unique_ptr<XMLNSContext> context;
    std::unique_ptr<T> object;
    bool ok = false;
};

// Reads `text` the way a host does (Part 2.2): parse, context, ReadXML(root).
template <class T>
Reading<T> Read(const wxString& text)
{
    Reading<T> r;
    r.document = ParseXml(text);
    r.object.reset(new T);
    if (r.document)
    {
        r.context.reset(new XMLNSContext(r.document.get()));
        r.ok = r.object->ReadXML(r.document->GetRoot(), r.context.get());
    }
    return r;
}

// Captures the records of the wxWidgets log while it lives.
class LogCapture : public wxLog
{
public:
    struct Record
    {
        wxLogLevel level;
        wxString message;
        std::string function;
        std::string file;
    };

    LogCapture() : m_previous(wxLog::SetActiveTarget(this)), m_previousLevel(wxLog::GetLogLevel())
    {
        wxLog::SetLogLevel(wxLOG_Max);
    }
    ~LogCapture() override
    {
        wxLog::SetActiveTarget(m_previous);
        wxLog::SetLogLevel(m_previousLevel);
    }

    const std::vector<Record>& Records() const { return m_records; }
    std::size_t Count(const wxString& message) const
    {
        std::size_t n = 0;
        for (const Record& r : m_records)
            n += r.message == message;
        return n;
    }

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) override
    {
        m_records.push_back({level, message, info.func ? info.func : "", info.filename ? info.filename : ""});
    }

private:
    wxLog* m_previous;
    wxLogLevel m_previousLevel;
    std::vector<Record> m_records;
};

// -- Value comparison for the generated tests -----------------------------------------

template <class T>
bool Same(const T& a, const T& b) { return a == b; }
inline bool Same(double a, double b) { return (std::isnan(a) && std::isnan(b)) || a == b; }
inline bool Same(float a, float b) { return (std::isnan(a) && std::isnan(b)) || a == b; }
inline bool Same(const wxAny& a, const wxAny& b)
{
    if (a.IsNull() || b.IsNull())
        return a.IsNull() == b.IsNull();
    wxString sa, sb;
    return a.GetType()->IsSameType(b.GetType()) && a.GetAs(&sa) && b.GetAs(&sb) && sa == sb;
}
template <class T>
bool Same(const XMLPtrArray<T>& a, const XMLPtrArray<T>& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return false;
    return true;
}
template <class T>
bool Same(const std::vector<T>& a, const std::vector<T>& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!Same(T(a[i]), T(b[i])))
            return false;
    return true;
}

// -- Per-class checks of the generated tests --------------------------------------------
// The templates, instantiated once per class, only exercise the class and
// return what they saw; every gtest assertion lives in a plain function, so
// that some 2,000 instantiations stay small to compile.

// A member read from an empty element keeps its constructor state and its
// presence bit stays clear.
void ExpectKept(bool same, bool present, const char* member);

struct LifecycleResult
{
    bool writeResult;      // WriteXML returned true
    bool nodeUntouched;    // ... and added nothing to the node
    bool readResult;       // ReadXML of an empty element returned true
};

// The node and context that the generated tests write to and read from.
wxXmlNode* EmptyElement();
XMLNSContext* EmptyContext();
bool NodeIsEmpty(const wxXmlNode* node);

// Default construction, copy, assignment, WriteXML, ReadXML of an empty
// element into `read`, destruction through the virtual destructor.
template <class T>
LifecycleResult ExerciseLifecycle(T& read)
{
    LifecycleResult result;
    T* object = new T;
    {
        T copy(*object);
        T assigned;
        assigned = copy;
    }
    wxXmlNode node(wxXML_ELEMENT_NODE, "e");
    result.writeResult = object->WriteXML(&node, EmptyContext());
    result.nodeUntouched = NodeIsEmpty(&node);
    delete object;
    result.readResult = read.ReadXML(EmptyElement(), EmptyContext());
    return result;
}
void CheckLifecycle(const LifecycleResult& result);

struct GroupResult
{
    bool hasUnknown;         // HasProperty of an unknown name
    bool setUnknownElement;  // SetProperty of an unknown element
    bool setUnknownAttribute;
    bool getElement;         // the GetProperty placeholders
    bool getAttribute;
};

// Groups and holders: an unknown name is refused, the placeholders succeed.
template <class T>
GroupResult ExerciseGroup()
{
    T group;
    XMLNSContext* context = EmptyContext();
    return GroupResult{T::HasProperty("unknownElementName", context),
                       group.SetProperty("unknownElementName", EmptyElement(), context),
                       group.SetProperty("unknownAttributeName", wxString("x"), context),
                       group.GetProperty("unknownElementName", EmptyElement(), context),
                       group.GetProperty("unknownAttributeName", wxString("x"), context)};
}
void CheckGroup(const GroupResult& result);

} // namespace ooxml_test

#endif // OOXML_TESTS_TEST_SUPPORT_H
