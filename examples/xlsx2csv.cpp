// xlsx2csv: prints the values of one sheet of a workbook as CSV, resolving
// shared strings.
//
//   xlsx2csv FILE [SHEET]      SHEET: a sheet name or its 1-based position (default 1)
#include <algorithm>
#include <map>
#include <vector>

#include <ooxml/aliases.h>
#include <ooxml/spreadsheetml/sml.h>  // one schema: builds faster than <ooxml/all.h>
#include <wx/init.h>

#include "common.h"

namespace sml = ooxml::sml;

namespace
{

// The text of a string item: its "t", or its runs' texts in order.
wxString Text(const sml::CT_Rst* item)
{
    if (item->CheckT())
        return item->GetT();
    wxString text;
    for (const sml::CT_RElt* run : item->GetR())
        text += run->GetT();
    return text;
}

// Column number (0-based) of a cell reference such as "AB12".
int Column(const wxString& reference)
{
    int column = 0;
    for (wxUniChar c : reference)
    {
        if (c < 'A' || c > 'Z')
            break;
        column = column * 26 + static_cast<int>(c.GetValue() - 'A' + 1);
    }
    return column - 1;
}

wxString Csv(const wxString& value)
{
    if (value.find_first_of(",\"\n\r") == wxString::npos)
        return value;
    wxString quoted = value;
    quoted.Replace("\"", "\"\"");
    return "\"" + quoted + "\"";
}

wxString CellValue(const sml::CT_Cell* cell, const std::vector<wxString>& strings)
{
    const wxString type = cell->GetT();
    if (type == "s")
    {
        unsigned long index = 0;
        return cell->GetV().ToULong(&index) && index < strings.size() ? strings[index] : wxString();
    }
    if (type == "inlineStr")
        return cell->GetIs() ? Text(cell->GetIs()) : wxString();
    if (type == "b")
        return cell->GetV() == "1" ? "TRUE" : "FALSE";
    return cell->GetV();
}

} // namespace

int main(int argc, char** argv)
{
    wxInitializer initializer;
    const wxString program = "xlsx2csv";
    if (argc < 2 || argc > 3)
        example::Die(program, "usage: xlsx2csv FILE [SHEET]");
    ooxml::opc::Package package;
    example::Open(package, argv[1], program);

    const wxString workbookPart = example::Target(package, "/", "officeDocument", program);
    ooxml::opc::PartRoot workbookRoot;
    sml::CT_Workbook* workbook = example::ReadRoot<sml::CT_Workbook>(package, workbookPart, &workbookRoot, program);

    // The sheet asked for, by name or position.
    const wxString wanted = argc == 3 ? wxString::FromUTF8(argv[2]) : wxString("1");
    unsigned long position = 0;
    const bool byPosition = wanted.ToULong(&position);
    const sml::CT_Sheet* sheet = nullptr;
    const XMLPtrArray<sml::CT_Sheet> sheets = workbook->GetSheets() ? workbook->GetSheets()->GetSheet()
                                                                     : XMLPtrArray<sml::CT_Sheet>();
    for (std::size_t i = 0; i < sheets.size() && !sheet; ++i)
        if (byPosition ? i + 1 == position : sheets[i]->GetName() == wanted)
            sheet = sheets[i];
    if (!sheet)
        example::Die(program, package.GetPath() + ": no sheet " + wanted);

    // The shared strings and the rows are streamed: one item or row is in
    // memory at a time, so the program's memory does not grow with the sheet.
    std::vector<wxString> strings;
    const wxString sharedStrings = example::Target(package, workbookPart, "sharedStrings", program);
    if (!sharedStrings.empty())
        example::Stream<sml::CT_Rst>(package, sharedStrings, {"sst", "si"}, program, [&](const sml::CT_Rst& item) {
            strings.push_back(Text(&item));
        });

    const wxString sheetPart = example::TargetById(package, workbookPart, sheet->GetR_id(), program);
    // Each row's number and its cells' columns (0-based), gaps and missing
    // references filled in from the previous ones.
    auto eachRow = [&](auto onRow) {
        unsigned nextRow = 1;
        example::Stream<sml::CT_Row>(package, sheetPart, {"worksheet", "sheetData", "row"}, program,
                                     [&](const sml::CT_Row& row) {
            const unsigned r = row.CheckR() ? row.GetR() : nextRow;
            nextRow = r + 1;
            std::map<int, const sml::CT_Cell*> cells;
            int nextColumn = 0;
            for (const sml::CT_Cell* cell : row.GetC())
            {
                const int c = cell->CheckR() ? Column(cell->GetR()) : nextColumn;
                nextColumn = c + 1;
                if (c >= 0)
                    cells[c] = cell;
            }
            onRow(r, cells);
        });
    };

    // A first pass finds the width, a second prints every row at that width
    // (rows are written in ascending order, as spreadsheet programs write them).
    int width = 0;
    eachRow([&](unsigned, const std::map<int, const sml::CT_Cell*>& cells) {
        if (!cells.empty())
            width = std::max(width, cells.rbegin()->first + 1);
    });
    unsigned previous = 0;
    eachRow([&](unsigned r, const std::map<int, const sml::CT_Cell*>& cells) {
        if (cells.empty())
            return;
        for (; previous + 1 < r; ++previous)
            example::Print(wxString(',', width > 0 ? width - 1 : 0) + "\n");
        previous = r;
        wxString line;
        for (int c = 0; c < width; ++c)
        {
            if (c)
                line += ",";
            const auto cell = cells.find(c);
            if (cell != cells.end())
                line += Csv(CellValue(cell->second, strings));
        }
        example::Print(line + "\n");
    });
    return 0;
}
