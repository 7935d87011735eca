// Non-template parts of the test helpers.
#include "test_support.h"

#include <wx/sstream.h>

namespace ooxml_test
{

wxString Xmlns(const char* prefix, const char* namespaceUri)
{
    return wxString::Format(" xmlns%s%s='%s'", *prefix ? ":" : "", prefix, namespaceUri);
}

wxString Ns(const wxString& element)
{
    static const char* const prefixes[][2] = {
        {"x", uri::sml}, {"r", uri::rel}, {"c", uri::chart}, {"v", uri::vml}, {"o", uri::office},
        {"w", "http://schemas.openxmlformats.org/wordprocessingml/2006/main"},
        {"m", "http://schemas.openxmlformats.org/officeDocument/2006/math"},
        {"a", "http://schemas.openxmlformats.org/drawingml/2006/main"},
        {"cx", "http://schemas.microsoft.com/office/drawing/2014/chartex"},
        {"d", "http://schemas.openxmlformats.org/drawingml/2006/diagram"},
        {"p", "http://schemas.openxmlformats.org/presentationml/2006/main"},
        {"vt", "http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes"},
        {"cp", "http://schemas.openxmlformats.org/package/2006/metadata/core-properties"},
        {"dc", "http://purl.org/dc/elements/1.1/"}, {"dcterms", "http://purl.org/dc/terms/"},
        {"wp", "http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing"},
        {"pic", "http://schemas.openxmlformats.org/drawingml/2006/picture"},
        {"dsp", "http://schemas.microsoft.com/office/drawing/2008/diagram"},
        {"a14", "http://schemas.microsoft.com/office/drawing/2010/main"},
        {"c15", "http://schemas.microsoft.com/office/drawing/2012/chart"},
        {"t", "http://schemas.openxmlformats.org/package/2006/content-types"},
        {"cu", "http://schemas.openxmlformats.org/officeDocument/2006/custom-properties"}};
    wxString declarations;
    for (const auto& prefix : prefixes)
        declarations += Xmlns(prefix[0], prefix[1]);
    const std::size_t end = element.find_first_of(" />");
    return element.Left(end) + declarations + element.Mid(end);
}

std::unique_ptr<wxXmlDocument> ParseXml(const wxString& text)
{
    wxStringInputStream input(text);
    std::unique_ptr<wxXmlDocument> document(new wxXmlDocument);
    wxLogNull quiet; // wx logs its own parse errors
    if (document->Load(input) && document->IsOk())
        return document;
    ADD_FAILURE() << "XML does not parse: " << text.utf8_str();
    return nullptr;
}

std::size_t LogCapture::Count(const wxString& message) const
{
    std::size_t n = 0;
    for (const Record& r : records)
        n += r.message == message;
    return n;
}

} // namespace ooxml_test
