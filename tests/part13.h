// Part 1.3's table of bound schemas, shared by the tests that check it.
#ifndef OOXML_TESTS_PART13_H
#define OOXML_TESTS_PART13_H

#include <map>
#include <string>

namespace part13
{

struct SchemaRow
{
    const char* suite;     // the generated test suite of the schema's classes
    const char* uri;
    int classes;
    const char* prefix;    // how other maps know it ("" if none do)
    std::map<std::string, std::string> knows; // other URIs its map gives a prefix
};

const char* const R = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const S = "http://schemas.openxmlformats.org/officeDocument/2006/sharedTypes";
const char* const A = "http://schemas.openxmlformats.org/drawingml/2006/main";
const char* const W = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";
const char* const M = "http://schemas.openxmlformats.org/officeDocument/2006/math";
const char* const P = "http://schemas.openxmlformats.org/presentationml/2006/main";
const char* const C = "http://schemas.openxmlformats.org/drawingml/2006/chart";
const char* const DGM = "http://schemas.openxmlformats.org/drawingml/2006/diagram";
const char* const VT = "http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes";
const char* const DC = "http://purl.org/dc/elements/1.1/";
const char* const A14 = "http://schemas.microsoft.com/office/drawing/2010/main";
const char* const V = "urn:schemas-microsoft-com:vml";

// The table of Part 1.3, row by row.
const SchemaRow kSchemas[] = {
    {"sml", "http://schemas.openxmlformats.org/spreadsheetml/2006/main", 385, "",
     {{S, "s"}, {"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing", "xdr"}, {R, "r"}}},
    {"wml", W, 349, "w",
     {{S, "s"}, {M, "m"}, {R, "r"}, {"http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing", "wp"},
      {"http://schemas.openxmlformats.org/schemaLibrary/2006/main", "sl"}}},
    {"dml", A, 295, "a",
     {{R, "r"}, {"http://schemas.microsoft.com/office/drawing/2008/diagram", "dsp"},
      {"http://schemas.microsoft.com/office/drawing/2018/animation/model3d", "a3danim"}, {S, "s"}, {DGM, "dgm"},
      {C, "c"}, {"http://schemas.microsoft.com/office/drawing/2014/chartex", "cx"},
      {"http://schemas.microsoft.com/office/drawing/2017/model3d", "am3d"}, {A14, "a14"}}},
    {"pml", P, 175, "p",
     {{A, "a"}, {"http://schemas.microsoft.com/office/powerpoint/2010/main", "p14"},
      {"http://schemas.microsoft.com/office/powerpoint/2012/main", "p15"}, {R, "r"}, {S, "s"}}},
    {"chart", C, 158, "c", {{R, "r"}, {"http://schemas.microsoft.com/office/drawing/2012/chart", "c15"}, {S, "s"}, {A, "a"}}},
    {"chartex", "http://schemas.microsoft.com/office/drawing/2014/chartex", 102, "cx", {{R, "r"}, {A, "a"}}},
    {"math", M, 80, "m", {{S, "s"}, {A, "a"}, {W, "w"}}},
    {"dgm", DGM, 65, "dgm", {{A, "a"}, {R, "r"}}},
    {"vml", V, 48, "v",
     {{S, "s"}, {"urn:schemas-microsoft-com:office:office", "o"}, {R, "r"},
      {"urn:schemas-microsoft-com:office:word", "w10"}, {"urn:schemas-microsoft-com:office:excel", "x"},
      {"urn:schemas-microsoft-com:office:powerpoint", "pvml"}, {W, "w"}}},
    {"a14", A14, 43, "a14", {{M, "m"}, {A, "a"}, {R, "r"}}},
    {"p14", "http://schemas.microsoft.com/office/powerpoint/2010/main", 32, "p14",
     {{P, "p"}, {A, "a"}, {A14, "a14"}, {S, "s"}}},
    {"wp", "http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing", 28, "wp",
     {{A, "a"}, {W, "w"}, {R, "r"}, {"http://schemas.openxmlformats.org/drawingml/2006/picture", "dpct"}}},
    {"vml_o", "urn:schemas-microsoft-com:office:office", 25, "o", {{V, "v"}, {S, "s"}, {R, "r"}}},
    {"xdr", "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing", 22, "xdr", {{A, "a"}, {R, "r"}}},
    {"dcterms", "http://purl.org/dc/terms/", 21, "", {{DC, "dc"}}},
    {"am3d", "http://schemas.microsoft.com/office/drawing/2017/model3d", 20, "am3d", {{A, "a"}, {R, "r"}}},
    {"cdr", "http://schemas.openxmlformats.org/drawingml/2006/chartDrawing", 19, "", {{A, "a"}}},
    {"c15", "http://schemas.microsoft.com/office/drawing/2012/chart", 18, "c15", {{C, "c"}, {A, "a"}}},
    {"bibliography", "http://schemas.openxmlformats.org/officeDocument/2006/bibliography", 10, "", {{S, "s"}}},
    {"vt", VT, 9, "vt", {{S, "s"}}},
    {"p15", "http://schemas.microsoft.com/office/powerpoint/2012/main", 7, "p15", {{A, "a"}, {P, "p"}}},
    {"dsp", "http://schemas.microsoft.com/office/drawing/2008/diagram", 7, "dsp", {{A, "a"}, {DGM, "d"}}},
    {"dc", DC, 5, "dc", {}},
    {"content_types", "http://schemas.openxmlformats.org/package/2006/content-types", 4, "", {}},
    {"extended_properties", "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties", 4, "",
     {{VT, "vt"}}},
    {"vml_w10", "urn:schemas-microsoft-com:office:word", 3, "w10", {}},
    {"digital_signature", "http://schemas.openxmlformats.org/package/2006/digital-signature", 3, "", {}},
    {"custom_properties", "http://schemas.openxmlformats.org/officeDocument/2006/custom-properties", 3, "",
     {{VT, "vt"}, {S, "s"}}},
    {"custom_xml", "http://schemas.openxmlformats.org/officeDocument/2006/customXml", 3, "", {{S, "s"}}},
    {"vml_pvml", "urn:schemas-microsoft-com:office:powerpoint", 2, "pvml", {}},
    {"vml_x", "urn:schemas-microsoft-com:office:excel", 2, "x", {{S, "s"}}},
    {"sl", "http://schemas.openxmlformats.org/schemaLibrary/2006/main", 2, "sl", {}},
    {"relationships", "http://schemas.openxmlformats.org/package/2006/relationships", 2, "", {}},
    {"characteristics", "http://schemas.openxmlformats.org/officeDocument/2006/characteristics", 2, "", {}},
    {"pic", "http://schemas.openxmlformats.org/drawingml/2006/picture", 2, "dpct", {{A, "a"}}},
    {"a3danim", "http://schemas.microsoft.com/office/drawing/2018/animation/model3d", 2, "a3danim",
     {{"http://schemas.microsoft.com/office/drawing/2018/animation", "aanim"}, {A, "a"}}},
    {"core_properties", "http://schemas.openxmlformats.org/package/2006/metadata/core-properties", 1, "", {{DC, "dc"}}},
    {"aanim", "http://schemas.microsoft.com/office/drawing/2018/animation", 1, "aanim", {{A, "a"}}},
};

} // namespace part13

#endif
