#!/usr/bin/env python3
"""Writes the project's own small sample documents: sample.xlsx, sample.docx
and sample.pptx, each a complete package (content types, relationships,
document properties, main parts).  Deterministic: running it again gives the
same bytes, so the committed samples can be checked against it.

    python3 samples/make_samples.py [OUTPUT_FOLDER]
"""

import os
import sys
import zipfile

STAMP = (2024, 1, 1, 0, 0, 0)
XML = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'

NS_CT = "http://schemas.openxmlformats.org/package/2006/content-types"
NS_PR = "http://schemas.openxmlformats.org/package/2006/relationships"
NS_R = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
REL = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
NS_SML = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
NS_WML = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
NS_PML = "http://schemas.openxmlformats.org/presentationml/2006/main"
NS_A = "http://schemas.openxmlformats.org/drawingml/2006/main"


def write_package(path, parts):
    """parts: list of (name, text) in the order they are stored."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        for name, text in parts:
            info = zipfile.ZipInfo(name, STAMP)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.external_attr = 0o644 << 16
            z.writestr(info, XML + text)


def content_types(defaults, overrides):
    body = "".join(f'<Default Extension="{e}" ContentType="{t}"/>' for e, t in defaults)
    body += "".join(f'<Override PartName="{p}" ContentType="{t}"/>' for p, t in overrides)
    return f'<Types xmlns="{NS_CT}">{body}</Types>'


def relationships(items):
    """items: (id, type, target, target mode); a short type is an officeDocument one."""
    body = "".join(
        f'<Relationship Id="{i}" Type="{t if t.startswith("http") else REL + "/" + t}" Target="{target}"'
        + (f' TargetMode="{mode}"' if mode else "") + "/>"
        for i, t, target, mode in items)
    return f'<Relationships xmlns="{NS_PR}">{body}</Relationships>'


def package_relationships(main_type, main_target):
    return relationships([
        ("rId1", main_type, main_target, None),
        ("rId2", "http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties",
         "docProps/core.xml", None),
        ("rId3", "extended-properties", "docProps/app.xml", None),
    ])


def core_properties(title):
    return ('<cp:coreProperties xmlns:cp="http://schemas.openxmlformats.org/package/2006/metadata/core-properties" '
            'xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:dcterms="http://purl.org/dc/terms/" '
            'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">'
            f'<dc:title>{title}</dc:title><dc:creator>ooxml project</dc:creator>'
            '<cp:keywords>sample, ooxml</cp:keywords><cp:revision>1</cp:revision>'
            '<dcterms:created xsi:type="dcterms:W3CDTF">2024-01-01T00:00:00Z</dcterms:created>'
            '</cp:coreProperties>')


def app_properties(application, extra=""):
    return ('<Properties xmlns="http://schemas.openxmlformats.org/officeDocument/2006/extended-properties" '
            'xmlns:vt="http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes">'
            f'<Application>{application}</Application>{extra}<DocSecurity>0</DocSecurity>'
            '<AppVersion>1.0</AppVersion></Properties>')


PROPS_CT = [("/docProps/core.xml", "application/vnd.openxmlformats-package.core-properties+xml"),
            ("/docProps/app.xml", "application/vnd.openxmlformats-officedocument.extended-properties+xml")]
BASE_DEFAULTS = [("rels", "application/vnd.openxmlformats-package.relationships+xml"),
                 ("xml", "application/xml")]


# -- spreadsheet ----------------------------------------------------------------

def xlsx():
    strings = ["Item", "Quantity", "Price", "Total", "Apples", "Pears", "Plums, red", "Sum"]
    sst = "".join(f"<si><t>{s}</t></si>" for s in strings)
    sheet1 = (f'<worksheet xmlns="{NS_SML}" xmlns:r="{NS_R}">'
              '<dimension ref="A1:D5"/>'
              '<sheetViews><sheetView tabSelected="1" workbookViewId="0"><pane ySplit="1" topLeftCell="A2" '
              'activePane="bottomLeft" state="frozen"/></sheetView></sheetViews>'
              '<sheetFormatPr defaultRowHeight="15"/><cols><col min="1" max="1" width="14" customWidth="1"/></cols>'
              '<sheetData>'
              '<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c>'
              '<c r="D1" t="s"><v>3</v></c></row>'
              '<row r="2"><c r="A2" t="s"><v>4</v></c><c r="B2"><v>3</v></c><c r="C2"><v>0.5</v></c>'
              '<c r="D2"><f>B2*C2</f><v>1.5</v></c></row>'
              '<row r="3"><c r="A3" t="s"><v>5</v></c><c r="B3"><v>2</v></c><c r="C3"><v>0.75</v></c>'
              '<c r="D3"><f>B3*C3</f><v>1.5</v></c></row>'
              '<row r="4"><c r="A4" t="s"><v>6</v></c><c r="B4"><v>10</v></c><c r="C4"><v>0.2</v></c>'
              '<c r="D4"><f>B4*C4</f><v>2</v></c></row>'
              '<row r="5"><c r="A5" t="s"><v>7</v></c><c r="D5" s="1"><f>SUM(D2:D4)</f><v>5</v></c></row>'
              '</sheetData><pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/>'
              '</worksheet>')
    sheet2 = (f'<worksheet xmlns="{NS_SML}"><sheetData>'
              '<row r="1"><c r="A1" t="inlineStr"><is><t>Notes</t></is></c><c r="B1" t="b"><v>1</v></c></row>'
              '<row r="2"><c r="A2" t="str"><f>"Total: "&amp;Sheet1!D5</f><v>Total: 5</v></c></row>'
              '</sheetData></worksheet>')
    workbook = (f'<workbook xmlns="{NS_SML}" xmlns:r="{NS_R}"><workbookPr defaultThemeVersion="124226"/>'
                '<bookViews><workbookView xWindow="0" yWindow="0" windowWidth="16000" windowHeight="9000"/></bookViews>'
                '<sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/><sheet name="Notes" sheetId="2" r:id="rId2"/>'
                '</sheets><calcPr calcId="191029"/></workbook>')
    styles = (f'<styleSheet xmlns="{NS_SML}"><numFmts count="1"><numFmt numFmtId="164" formatCode="0.00"/></numFmts>'
              '<fonts count="2"><font><sz val="11"/><name val="Calibri"/><family val="2"/></font>'
              '<font><b/><sz val="11"/><color theme="1"/><name val="Calibri"/><family val="2"/></font></fonts>'
              '<fills count="2"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/>'
              '</fill></fills><borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>'
              '<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>'
              '<cellXfs count="2"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/>'
              '<xf numFmtId="164" fontId="1" fillId="0" borderId="0" xfId="0" applyNumberFormat="1" applyFont="1"/>'
              '</cellXfs><cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles>'
              '</styleSheet>')
    ct = content_types(BASE_DEFAULTS, [
        ("/xl/workbook.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"),
        ("/xl/worksheets/sheet1.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"),
        ("/xl/worksheets/sheet2.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"),
        ("/xl/sharedStrings.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml"),
        ("/xl/styles.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml")] + PROPS_CT)
    wb_rels = relationships([("rId1", "worksheet", "worksheets/sheet1.xml", None),
                             ("rId2", "worksheet", "worksheets/sheet2.xml", None),
                             ("rId3", "sharedStrings", "sharedStrings.xml", None),
                             ("rId4", "styles", "styles.xml", None)])
    return [("[Content_Types].xml", ct),
            ("_rels/.rels", package_relationships("officeDocument", "xl/workbook.xml")),
            ("docProps/core.xml", core_properties("Sample workbook")),
            ("docProps/app.xml", app_properties("ooxml samples")),
            ("xl/workbook.xml", workbook), ("xl/_rels/workbook.xml.rels", wb_rels),
            ("xl/worksheets/sheet1.xml", sheet1), ("xl/worksheets/sheet2.xml", sheet2),
            ("xl/sharedStrings.xml", f'<sst xmlns="{NS_SML}" count="8" uniqueCount="8">{sst}</sst>'),
            ("xl/styles.xml", styles)]


# -- word-processing document ----------------------------------------------------------

def para(text, style=None, bold_word=None):
    ppr = f'<w:pPr><w:pStyle w:val="{style}"/></w:pPr>' if style else ""
    if bold_word:
        before, after = text.split(bold_word, 1)
        runs = (f'<w:r><w:t xml:space="preserve">{before}</w:t></w:r>'
                f'<w:r><w:rPr><w:b/></w:rPr><w:t>{bold_word}</w:t></w:r>'
                f'<w:r><w:t xml:space="preserve">{after}</w:t></w:r>')
    else:
        runs = f"<w:r><w:t>{text}</w:t></w:r>"
    return f"<w:p>{ppr}{runs}</w:p>"


def cell(text):
    return f'<w:tc><w:tcPr><w:tcW w:w="2500" w:type="dxa"/></w:tcPr>{para(text)}</w:tc>'


def docx():
    table = ('<w:tbl><w:tblPr><w:tblStyle w:val="TableGrid"/><w:tblW w:w="5000" w:type="dxa"/></w:tblPr>'
             '<w:tblGrid><w:gridCol w:w="2500"/><w:gridCol w:w="2500"/></w:tblGrid>'
             f'<w:tr>{cell("Fruit")}{cell("Colour")}</w:tr><w:tr>{cell("Plum")}{cell("Red")}</w:tr></w:tbl>')
    body = (para("Sample document", "Title") +
            para("This document was written by the ooxml project's sample script.", bold_word="ooxml") +
            para("A table follows.") + table +
            '<w:p><w:r><w:t xml:space="preserve">Last paragraph, with a </w:t></w:r>'
            '<w:hyperlink r:id="rId9"><w:r><w:t>link</w:t></w:r></w:hyperlink><w:r><w:t>.</w:t></w:r></w:p>'
            '<w:sectPr><w:pgSz w:w="11906" w:h="16838"/><w:pgMar w:top="1440" w:right="1440" w:bottom="1440" '
            'w:left="1440" w:header="708" w:footer="708" w:gutter="0"/></w:sectPr>')
    document = f'<w:document xmlns:w="{NS_WML}" xmlns:r="{NS_R}"><w:body>{body}</w:body></w:document>'
    styles = (f'<w:styles xmlns:w="{NS_WML}"><w:docDefaults><w:rPrDefault><w:rPr><w:sz w:val="22"/></w:rPr>'
              '</w:rPrDefault></w:docDefaults>'
              '<w:style w:type="paragraph" w:default="1" w:styleId="Normal"><w:name w:val="Normal"/></w:style>'
              '<w:style w:type="paragraph" w:styleId="Title"><w:name w:val="Title"/><w:basedOn w:val="Normal"/>'
              '<w:qFormat/><w:rPr><w:sz w:val="56"/></w:rPr></w:style>'
              '<w:style w:type="table" w:styleId="TableGrid"><w:name w:val="Table Grid"/></w:style></w:styles>')
    settings = f'<w:settings xmlns:w="{NS_WML}"><w:zoom w:percent="100"/><w:defaultTabStop w:val="708"/></w:settings>'
    ct = content_types(BASE_DEFAULTS, [
        ("/word/document.xml", "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"),
        ("/word/styles.xml", "application/vnd.openxmlformats-officedocument.wordprocessingml.styles+xml"),
        ("/word/settings.xml", "application/vnd.openxmlformats-officedocument.wordprocessingml.settings+xml")]
        + PROPS_CT)
    doc_rels = relationships([("rId1", "styles", "styles.xml", None), ("rId2", "settings", "settings.xml", None),
                              ("rId9", "hyperlink", "https://example.org/", "External")])
    return [("[Content_Types].xml", ct),
            ("_rels/.rels", package_relationships("officeDocument", "word/document.xml")),
            ("docProps/core.xml", core_properties("Sample document")),
            ("docProps/app.xml", app_properties("ooxml samples")),
            ("word/document.xml", document), ("word/_rels/document.xml.rels", doc_rels),
            ("word/styles.xml", styles), ("word/settings.xml", settings)]


# -- presentation -----------------------------------------------------------------------

def shape(shape_id, name, placeholder, paragraphs):
    ph = f'<p:ph type="{placeholder}"/>' if placeholder == "title" else '<p:ph idx="1"/>'
    paras = "".join(f'<a:p><a:r><a:rPr lang="en-GB" dirty="0"/><a:t>{text}</a:t></a:r></a:p>' for text in paragraphs)
    return (f'<p:sp><p:nvSpPr><p:cNvPr id="{shape_id}" name="{name}"/><p:cNvSpPr><a:spLocks noGrp="1"/></p:cNvSpPr>'
            f'<p:nvPr>{ph}</p:nvPr></p:nvSpPr><p:spPr/><p:txBody><a:bodyPr/><a:lstStyle/>{paras}</p:txBody></p:sp>')


def tree(shapes):
    return ('<p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>'
            '<p:grpSpPr><a:xfrm><a:off x="0" y="0"/><a:ext cx="0" cy="0"/><a:chOff x="0" y="0"/>'
            f'<a:chExt cx="0" cy="0"/></a:xfrm></p:grpSpPr>{shapes}</p:spTree></p:cSld>')


def slide(title, lines):
    return (f'<p:sld xmlns:a="{NS_A}" xmlns:r="{NS_R}" xmlns:p="{NS_PML}">'
            + tree(shape(2, "Title 1", "title", [title]) + shape(3, "Content 2", "body", lines))
            + '<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>')


def theme():
    colours = "".join(f'<a:{n}><a:srgbClr val="{v}"/></a:{n}>' for n, v in [
        ("dk1", "000000"), ("lt1", "FFFFFF"), ("dk2", "1F497D"), ("lt2", "EEECE1"), ("accent1", "4F81BD"),
        ("accent2", "C0504D"), ("accent3", "9BBB59"), ("accent4", "8064A2"), ("accent5", "4BACC6"),
        ("accent6", "F79646"), ("hlink", "0000FF"), ("folHlink", "800080")])
    fill = '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>'
    line = '<a:ln w="9525"><a:solidFill><a:schemeClr val="phClr"/></a:solidFill></a:ln>'
    return (f'<a:theme xmlns:a="{NS_A}" name="Sample"><a:themeElements><a:clrScheme name="Sample">{colours}'
            '</a:clrScheme><a:fontScheme name="Sample"><a:majorFont><a:latin typeface="Calibri"/><a:ea typeface=""/>'
            '<a:cs typeface=""/></a:majorFont><a:minorFont><a:latin typeface="Calibri"/><a:ea typeface=""/>'
            '<a:cs typeface=""/></a:minorFont></a:fontScheme><a:fmtScheme name="Sample">'
            f'<a:fillStyleLst>{fill * 3}</a:fillStyleLst><a:lnStyleLst>{line * 3}</a:lnStyleLst>'
            '<a:effectStyleLst>' + '<a:effectStyle><a:effectLst/></a:effectStyle>' * 3 + '</a:effectStyleLst>'
            f'<a:bgFillStyleLst>{fill * 3}</a:bgFillStyleLst></a:fmtScheme></a:themeElements></a:theme>')


def pptx():
    pml_ct = "application/vnd.openxmlformats-officedocument.presentationml"
    master = (f'<p:sldMaster xmlns:a="{NS_A}" xmlns:r="{NS_R}" xmlns:p="{NS_PML}">' + tree("") +
              '<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1" accent2="accent2" '
              'accent3="accent3" accent4="accent4" accent5="accent5" accent6="accent6" hlink="hlink" '
              'folHlink="folHlink"/><p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="rId1"/></p:sldLayoutIdLst>'
              '</p:sldMaster>')
    layout = (f'<p:sldLayout xmlns:a="{NS_A}" xmlns:r="{NS_R}" xmlns:p="{NS_PML}" type="obj" preserve="1">' +
              tree("") + '<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sldLayout>')
    presentation = (f'<p:presentation xmlns:a="{NS_A}" xmlns:r="{NS_R}" xmlns:p="{NS_PML}" saveSubsetFonts="1">'
                    '<p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/></p:sldMasterIdLst>'
                    '<p:sldIdLst><p:sldId id="256" r:id="rId2"/><p:sldId id="257" r:id="rId3"/></p:sldIdLst>'
                    '<p:sldSz cx="9144000" cy="6858000" type="screen4x3"/><p:notesSz cx="6858000" cy="9144000"/>'
                    '</p:presentation>')
    ct = content_types(BASE_DEFAULTS, [
        ("/ppt/presentation.xml", f"{pml_ct}.presentation.main+xml"),
        ("/ppt/slideMasters/slideMaster1.xml", f"{pml_ct}.slideMaster+xml"),
        ("/ppt/slideLayouts/slideLayout1.xml", f"{pml_ct}.slideLayout+xml"),
        ("/ppt/slides/slide1.xml", f"{pml_ct}.slide+xml"),
        ("/ppt/slides/slide2.xml", f"{pml_ct}.slide+xml"),
        ("/ppt/theme/theme1.xml", "application/vnd.openxmlformats-officedocument.theme+xml")] + PROPS_CT)
    layout_rel = relationships([("rId1", "slideLayout", "../slideLayouts/slideLayout1.xml", None)])
    return [("[Content_Types].xml", ct),
            ("_rels/.rels", package_relationships("officeDocument", "ppt/presentation.xml")),
            ("docProps/core.xml", core_properties("Sample presentation")),
            ("docProps/app.xml", app_properties("ooxml samples", "<Slides>2</Slides>")),
            ("ppt/presentation.xml", presentation),
            ("ppt/_rels/presentation.xml.rels", relationships([
                ("rId1", "slideMaster", "slideMasters/slideMaster1.xml", None),
                ("rId2", "slide", "slides/slide1.xml", None), ("rId3", "slide", "slides/slide2.xml", None),
                ("rId4", "theme", "theme/theme1.xml", None)])),
            ("ppt/slideMasters/slideMaster1.xml", master),
            ("ppt/slideMasters/_rels/slideMaster1.xml.rels", relationships([
                ("rId1", "slideLayout", "../slideLayouts/slideLayout1.xml", None),
                ("rId2", "theme", "../theme/theme1.xml", None)])),
            ("ppt/slideLayouts/slideLayout1.xml", layout),
            ("ppt/slideLayouts/_rels/slideLayout1.xml.rels", relationships([
                ("rId1", "slideMaster", "../slideMasters/slideMaster1.xml", None)])),
            ("ppt/slides/slide1.xml", slide("Welcome", ["Made by the ooxml sample script", "Two slides"])),
            ("ppt/slides/_rels/slide1.xml.rels", layout_rel),
            ("ppt/slides/slide2.xml", slide("Fruit", ["Apples", "Pears", "Plums"])),
            ("ppt/slides/_rels/slide2.xml.rels", layout_rel),
            ("ppt/theme/theme1.xml", theme())]


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    for name, parts in (("sample.xlsx", xlsx()), ("sample.docx", docx()), ("sample.pptx", pptx())):
        write_package(os.path.join(out, name), parts)
        print(os.path.join(out, name))


if __name__ == "__main__":
    main()
