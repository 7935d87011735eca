// docx2txt: prints the text of a word-processing document, paragraph by
// paragraph in document order, tables row by row with cells separated by tabs.
//
//   docx2txt FILE
#include <ooxml/aliases.h>
#include <ooxml/wordprocessingml/wml.h>  // one schema: builds faster than <ooxml/all.h>
#include <wx/init.h>

#include "common.h"

namespace wml = ooxml::wml;

namespace
{

void Table(const wml::CT_Tbl* table, wxString& out);
void ParagraphContent(const XMLPtrArray<wml::EG_PContent>& items, wxString& out);

// The text of a run: text, tabs and breaks, in order.
void RunText(const wml::CT_R* run, wxString& out)
{
    for (const wml::EG_RunInnerContent* inner : run->GetEG_RunInnerContent())
    {
        const wml::EG_RunInnerContentData__* data = inner->GetData__();
        if (!data)
            continue;
        if (data->GetT())
            out += data->GetT()->GetValue();
        if (data->GetTab() || data->GetPtab())
            out += "\t";
        if (data->GetBr() || data->GetCr())
            out += "\n";
        if (data->GetNoBreakHyphen())
            out += "-";
    }
}

void ContentText(const XMLPtrArray<wml::EG_ContentBlockContent>& contents, wxString& out)
{
    for (const wml::EG_ContentBlockContent* content : contents)
    {
        const wml::EG_ContentBlockContentData__* data = content->GetData__();
        if (!data)
            continue;
        for (const wml::CT_P* paragraph : data->GetP())
        {
            wxString text;
            ParagraphContent(paragraph->GetEG_PContent(), text);
            out += text + "\n";
        }
        for (const wml::CT_Tbl* table : data->GetTbl())
            Table(table, out);
        // Content controls and custom XML around blocks hold blocks too.
        if (data->GetSdt() && data->GetSdt()->GetSdtContent())
            ContentText(data->GetSdt()->GetSdtContent()->GetEG_ContentBlockContent(), out);
        if (data->GetCustomXml())
            ContentText(data->GetCustomXml()->GetEG_ContentBlockContent(), out);
    }
}

void BlockText(const XMLPtrArray<wml::EG_BlockLevelElts>& blocks, wxString& out)
{
    for (const wml::EG_BlockLevelElts* block : blocks)
    {
        if (!block->GetData__())
            continue;
        for (const wml::EG_BlockLevelChunkElts* chunk : block->GetData__()->GetEG_BlockLevelChunkElts())
            if (chunk->GetData__())
                ContentText(chunk->GetData__()->GetEG_ContentBlockContent(), out);
    }
}


// Runs, and runs inside hyperlinks, fields, smart tags and content controls.
void RunContent(const wml::EG_ContentRunContent* group, wxString& out)
{
    const wml::EG_ContentRunContentData__* data = group->GetData__();
    if (!data)
        return;
    if (data->GetR())
        RunText(data->GetR(), out);
    if (data->GetSdt() && data->GetSdt()->GetSdtContent())
        ParagraphContent(data->GetSdt()->GetSdtContent()->GetEG_PContent(), out);
    if (data->GetSmartTag())
        ParagraphContent(data->GetSmartTag()->GetEG_PContent(), out);
    if (data->GetCustomXml())
        ParagraphContent(data->GetCustomXml()->GetEG_PContent(), out);
    for (const wml::EG_RunLevelElts* level : data->GetEG_RunLevelElts())
        if (level->GetData__())
            for (const wml::CT_RunTrackChange* change : {level->GetData__()->GetIns(), level->GetData__()->GetMoveTo()})
                if (change)
                    for (const wml::CT_RunTrackChangeData__* inserted : change->GetData__())
                        if (inserted->GetEG_ContentRunContent())
                            RunContent(inserted->GetEG_ContentRunContent(), out);
}

void ParagraphContent(const XMLPtrArray<wml::EG_PContent>& items, wxString& out)
{
    for (const wml::EG_PContent* item : items)
    {
        const wml::EG_PContentData__* data = item->GetData__();
        if (!data)
            continue;
        for (const wml::EG_ContentRunContent* group : data->GetEG_ContentRunContent())
            RunContent(group, out);
        for (const wml::CT_SimpleField* field : data->GetFldSimple())
            ParagraphContent(field->GetEG_PContent(), out);
        if (data->GetHyperlink())
            ParagraphContent(data->GetHyperlink()->GetEG_PContent(), out);
    }
}

void Table(const wml::CT_Tbl* table, wxString& out)
{
    for (const wml::EG_ContentRowContent* rowGroup : table->GetEG_ContentRowContent())
    {
        if (!rowGroup->GetData__())
            continue;
        for (const wml::CT_Row* row : rowGroup->GetData__()->GetTr())
        {
            wxString line;
            bool first = true;
            for (const wml::EG_ContentCellContent* cellGroup : row->GetEG_ContentCellContent())
            {
                if (!cellGroup->GetData__())
                    continue;
                for (const wml::CT_Tc* cell : cellGroup->GetData__()->GetTc())
                {
                    wxString text;
                    BlockText(cell->GetEG_BlockLevelElts(), text);
                    text.Trim();
                    text.Replace("\n", " ");
                    line += (first ? "" : "\t") + text;
                    first = false;
                }
            }
            out += line + "\n";
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    wxInitializer initializer;
    const wxString program = "docx2txt";
    if (argc != 2)
        example::Die(program, "usage: docx2txt FILE");
    ooxml::opc::Package package;
    example::Open(package, argv[1], program);
    const wxString documentPart = example::Target(package, "/", "officeDocument", program);
    ooxml::opc::PartRoot root;
    wml::CT_Document* document = example::ReadRoot<wml::CT_Document>(package, documentPart, &root, program);
    wxString text;
    if (document->GetBody())
        BlockText(document->GetBody()->GetEG_BlockLevelElts(), text);
    example::Print(text);
    return 0;
}
