// xlsx2csv: prints the values of one sheet of a workbook as CSV, resolving
// shared strings.
//
//   xlsx2csv FILE [SHEET]      SHEET: a sheet name or its 1-based position (default 1)
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

    std::vector<wxString> strings;
    const wxString sharedStrings = example::Target(package, workbookPart, "sharedStrings", program);
    ooxml::opc::PartRoot sstRoot;
    if (!sharedStrings.empty())
        for (const sml::CT_Rst* item : example::ReadRoot<sml::CT_Sst>(package, sharedStrings, &sstRoot, program)->GetSi())
            strings.push_back(Text(item));

    const wxString sheetPart = example::TargetById(package, workbookPart, sheet->GetR_id(), program);
    ooxml::opc::PartRoot sheetRoot;
    sml::CT_Worksheet* worksheet = example::ReadRoot<sml::CT_Worksheet>(package, sheetPart, &sheetRoot, program);
    if (!worksheet->GetSheetData())
        return 0;

    // Rows in order; cells placed by their column, gaps left empty.
    std::map<unsigned, std::map<int, wxString>> grid;
    int width = 0;
    unsigned nextRow = 1;
    for (const sml::CT_Row* row : worksheet->GetSheetData()->GetRow())
    {
        const unsigned r = row->CheckR() ? row->GetR() : nextRow;
        nextRow = r + 1;
        int nextColumn = 0;
        for (const sml::CT_Cell* cell : row->GetC())
        {
            const int c = cell->CheckR() ? Column(cell->GetR()) : nextColumn;
            nextColumn = c + 1;
            if (c >= 0)
            {
                grid[r][c] = CellValue(cell, strings);
                width = std::max(width, c + 1);
            }
        }
    }
    unsigned previous = 0;
    for (const auto& row : grid)
    {
        for (; previous + 1 < row.first; ++previous)
            example::Print(wxString(',', width > 0 ? width - 1 : 0) + "\n");
        previous = row.first;
        wxString line;
        for (int c = 0; c < width; ++c)
        {
            if (c)
                line += ",";
            const auto value = row.second.find(c);
            if (value != row.second.end())
                line += Csv(value->second);
        }
        example::Print(line + "\n");
    }
    return 0;
}
