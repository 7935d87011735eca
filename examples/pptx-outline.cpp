// pptx-outline: prints each slide's title and the text of its other shapes,
// indented by paragraph level, in slide order.
//
//   pptx-outline FILE
#include <ooxml/aliases.h>
#include <ooxml/drawingml/dml.h>
#include <ooxml/presentationml/pml.h>  // two schemas: builds faster than <ooxml/all.h>
#include <wx/init.h>

#include "common.h"

namespace pml = ooxml::pml;
namespace dml = ooxml::dml;

namespace
{

wxString ParagraphText(const dml::CT_TextParagraph* paragraph)
{
    wxString text;
    for (const dml::EG_TextRun* run : paragraph->GetEG_TextRun())
    {
        const dml::EG_TextRunData__* data = run->GetData__();
        if (!data)
            continue;
        if (data->GetR())
            text += data->GetR()->GetT();
        else if (data->GetFld())
            text += data->GetFld()->GetT();
        else if (data->GetBr())
            text += " ";
    }
    return text;
}

bool IsTitle(const pml::CT_Shape* shape)
{
    const pml::CT_ShapeNonVisual* properties = shape->GetNvSpPr();
    const pml::CT_Placeholder* placeholder =
        properties && properties->GetNvPr() ? properties->GetNvPr()->GetPh() : nullptr;
    return placeholder && (placeholder->GetType() == "title" || placeholder->GetType() == "ctrTitle");
}

// The shapes of a tree in z-order, groups flattened.
void Shapes(const pml::CT_GroupShape* tree, std::vector<const pml::CT_Shape*>& out)
{
    for (const pml::CT_GroupShapeData__* item : tree->GetData__())
    {
        if (item->GetSp())
            out.push_back(item->GetSp());
        else if (item->GetGrpSp())
            Shapes(item->GetGrpSp(), out);
    }
}

} // namespace

int main(int argc, char** argv)
{
    wxInitializer initializer;
    const wxString program = "pptx-outline";
    if (argc != 2)
        example::Die(program, "usage: pptx-outline FILE");
    ooxml::opc::Package package;
    example::Open(package, argv[1], program);
    const wxString presentationPart = example::Target(package, "/", "officeDocument", program);
    ooxml::opc::PartRoot root;
    pml::CT_Presentation* presentation =
        example::ReadRoot<pml::CT_Presentation>(package, presentationPart, &root, program);
    if (!presentation->GetSldIdLst())
        return 0;
    int number = 0;
    for (const pml::CT_SlideIdListEntry* entry : presentation->GetSldIdLst()->GetSldId())
    {
        const wxString slidePart = example::TargetById(package, presentationPart, entry->GetR_id(), program);
        ooxml::opc::PartRoot slideRoot;
        pml::CT_Slide* slide = example::ReadRoot<pml::CT_Slide>(package, slidePart, &slideRoot, program);
        std::vector<const pml::CT_Shape*> shapes;
        if (slide->GetCSld() && slide->GetCSld()->GetSpTree())
            Shapes(slide->GetCSld()->GetSpTree(), shapes);
        wxString title;
        wxString body;
        for (const pml::CT_Shape* shape : shapes)
        {
            if (!shape->GetTxBody())
                continue;
            for (const dml::CT_TextParagraph* paragraph : shape->GetTxBody()->GetP())
            {
                const wxString text = ParagraphText(paragraph);
                if (text.empty())
                    continue;
                if (IsTitle(shape))
                    title += (title.empty() ? "" : " ") + text;
                else
                {
                    const int level = paragraph->GetPPr() ? paragraph->GetPPr()->GetLvl() : 0;
                    body += wxString(' ', 2 * (level + 1)) + text + "\n";
                }
            }
        }
        example::Print(wxString::Format("Slide %d: %s\n", ++number, title) + body);
    }
    return 0;
}
