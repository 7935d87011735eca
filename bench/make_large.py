#!/usr/bin/env python3
"""Writes the large documents of the benchmarks (our own content):

  large.xlsx  one worksheet of 2,000,000 cells (200,000 rows x 10 columns):
              numbers, shared strings and formulas
  medium.xlsx the same with 200,000 cells (20,000 rows)
  large.docx  20,000 paragraphs with several runs each, and a table after
              every 100 paragraphs
  large.pptx  500 slides, each with a title and five bullets

    python3 bench/make_large.py OUTPUT_FOLDER [NAME...]    (all four by default)
"""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "samples"))
import make_samples as s  # noqa: E402  (the samples' package helpers)

WORDS = ("apple pear plum cherry quince medlar damson greengage apricot peach "
         "lemon lime orange grape melon fig date olive walnut hazel").split()


def column(i):
    return "ABCDEFGHIJ"[i]


def xlsx(count=200000):
    rows, strings = [], [f"{WORDS[i % 20]} {i}" for i in range(10000)]
    for r in range(1, count + 1):
        k = r * 7919
        cells = [f'<c r="A{r}" t="s"><v>{k % 10000}</v></c>']
        cells += [f'<c r="{column(c)}{r}"><v>{(k * (c + 1)) % 100003 / 8}</v></c>' for c in range(1, 8)]
        cells.append(f'<c r="I{r}"><f>SUM(B{r}:H{r})</f><v>{r}</v></c>')
        cells.append(f'<c r="J{r}" t="s"><v>{(k + 17) % 10000}</v></c>')
        rows.append(f'<row r="{r}" spans="1:10">{"".join(cells)}</row>')
    sheet = (f'<worksheet xmlns="{s.NS_SML}" xmlns:r="{s.NS_R}"><dimension ref="A1:J{count}"/>'
             f'<sheetData>{"".join(rows)}</sheetData></worksheet>')
    sst = "".join(f"<si><t>{t}</t></si>" for t in strings)
    workbook = (f'<workbook xmlns="{s.NS_SML}" xmlns:r="{s.NS_R}"><sheets>'
                '<sheet name="Data" sheetId="1" r:id="rId1"/></sheets></workbook>')
    sml = "application/vnd.openxmlformats-officedocument.spreadsheetml"
    ct = s.content_types(s.BASE_DEFAULTS, [("/xl/workbook.xml", f"{sml}.sheet.main+xml"),
                                           ("/xl/worksheets/sheet1.xml", f"{sml}.worksheet+xml"),
                                           ("/xl/sharedStrings.xml", f"{sml}.sharedStrings+xml")] + s.PROPS_CT)
    return [("[Content_Types].xml", ct),
            ("_rels/.rels", s.package_relationships("officeDocument", "xl/workbook.xml")),
            ("docProps/core.xml", s.core_properties("Large workbook")),
            ("docProps/app.xml", s.app_properties("ooxml bench")),
            ("xl/workbook.xml", workbook),
            ("xl/_rels/workbook.xml.rels", s.relationships([("rId1", "worksheet", "worksheets/sheet1.xml", None),
                                                           ("rId2", "sharedStrings", "sharedStrings.xml", None)])),
            ("xl/worksheets/sheet1.xml", sheet),
            ("xl/sharedStrings.xml", f'<sst xmlns="{s.NS_SML}" count="{2 * count}" uniqueCount="10000">{sst}</sst>')]


def docx():
    body = []
    for i in range(20000):
        w = [WORDS[(i + j) % 20] for j in range(12)]
        body.append('<w:p><w:pPr><w:spacing w:after="120"/></w:pPr>'
                    f'<w:r><w:t xml:space="preserve">Paragraph {i}: {" ".join(w[:5])} </w:t></w:r>'
                    f'<w:r><w:rPr><w:b/><w:sz w:val="24"/></w:rPr><w:t>{" ".join(w[5:8])}</w:t></w:r>'
                    f'<w:r><w:rPr><w:i/><w:color w:val="1F497D"/></w:rPr><w:t xml:space="preserve"> {" ".join(w[8:])}.</w:t></w:r></w:p>')
        if i % 100 == 99:
            rows = "".join("<w:tr>" + "".join(s.cell(f"{WORDS[(r + c) % 20]} {r}.{c}") for c in range(4)) + "</w:tr>"
                           for r in range(3))
            body.append('<w:tbl><w:tblPr><w:tblW w:w="10000" w:type="dxa"/></w:tblPr><w:tblGrid>'
                        + '<w:gridCol w:w="2500"/>' * 4 + f"</w:tblGrid>{rows}</w:tbl>")
    document = (f'<w:document xmlns:w="{s.NS_WML}" xmlns:r="{s.NS_R}"><w:body>{"".join(body)}'
                '<w:sectPr><w:pgSz w:w="11906" w:h="16838"/></w:sectPr></w:body></w:document>')
    wml = "application/vnd.openxmlformats-officedocument.wordprocessingml"
    ct = s.content_types(s.BASE_DEFAULTS, [("/word/document.xml", f"{wml}.document.main+xml")] + s.PROPS_CT)
    return [("[Content_Types].xml", ct),
            ("_rels/.rels", s.package_relationships("officeDocument", "word/document.xml")),
            ("docProps/core.xml", s.core_properties("Large document")),
            ("docProps/app.xml", s.app_properties("ooxml bench")),
            ("word/document.xml", document)]


def pptx():
    sample = dict(s.pptx())
    pml = "application/vnd.openxmlformats-officedocument.presentationml"
    count = 500
    ids = "".join(f'<p:sldId id="{256 + i}" r:id="rId{10 + i}"/>' for i in range(count))
    presentation = (f'<p:presentation xmlns:a="{s.NS_A}" xmlns:r="{s.NS_R}" xmlns:p="{s.NS_PML}">'
                    '<p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/></p:sldMasterIdLst>'
                    f'<p:sldIdLst>{ids}</p:sldIdLst><p:sldSz cx="9144000" cy="6858000"/>'
                    '<p:notesSz cx="6858000" cy="9144000"/></p:presentation>')
    overrides = [("/ppt/presentation.xml", f"{pml}.presentation.main+xml"),
                 ("/ppt/slideMasters/slideMaster1.xml", f"{pml}.slideMaster+xml"),
                 ("/ppt/slideLayouts/slideLayout1.xml", f"{pml}.slideLayout+xml"),
                 ("/ppt/theme/theme1.xml", "application/vnd.openxmlformats-officedocument.theme+xml")]
    overrides += [(f"/ppt/slides/slide{i + 1}.xml", f"{pml}.slide+xml") for i in range(count)]
    rels = [("rId1", "slideMaster", "slideMasters/slideMaster1.xml", None),
            ("rId2", "theme", "theme/theme1.xml", None)]
    rels += [(f"rId{10 + i}", "slide", f"slides/slide{i + 1}.xml", None) for i in range(count)]
    parts = [("[Content_Types].xml", s.content_types(s.BASE_DEFAULTS, overrides + s.PROPS_CT)),
             ("_rels/.rels", s.package_relationships("officeDocument", "ppt/presentation.xml")),
             ("docProps/core.xml", s.core_properties("Large presentation")),
             ("docProps/app.xml", s.app_properties("ooxml bench")),
             ("ppt/presentation.xml", presentation),
             ("ppt/_rels/presentation.xml.rels", s.relationships(rels))]
    for name in ("ppt/slideMasters/slideMaster1.xml", "ppt/slideMasters/_rels/slideMaster1.xml.rels",
                 "ppt/slideLayouts/slideLayout1.xml", "ppt/slideLayouts/_rels/slideLayout1.xml.rels",
                 "ppt/theme/theme1.xml"):
        parts.append((name, sample[name]))
    layout = s.relationships([("rId1", "slideLayout", "../slideLayouts/slideLayout1.xml", None)])
    for i in range(count):
        lines = [f"{WORDS[(i + j) % 20]} point {j + 1} of slide {i + 1}" for j in range(5)]
        parts.append((f"ppt/slides/slide{i + 1}.xml", s.slide(f"Slide {i + 1}: {WORDS[i % 20]}", lines)))
        parts.append((f"ppt/slides/_rels/slide{i + 1}.xml.rels", layout))
    return parts


DOCUMENTS = {"large.xlsx": xlsx, "medium.xlsx": lambda: xlsx(20000), "large.docx": docx, "large.pptx": pptx}


def main():
    if len(sys.argv) < 2 or any(name not in DOCUMENTS for name in sys.argv[2:]):
        sys.exit("usage: make_large.py OUTPUT_FOLDER [" + " ".join(DOCUMENTS) + "]")
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    for name in sys.argv[2:] or DOCUMENTS:
        make = DOCUMENTS[name]
        path = os.path.join(out, name)
        s.write_package(path, make())
        print(path, os.path.getsize(path), "bytes")


if __name__ == "__main__":
    main()
