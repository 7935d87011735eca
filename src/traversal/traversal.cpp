// The non-generated part of the traversal: the Visitor's out-of-line members.
#include "ooxml/traversal/traversal.h"

namespace ooxml
{
namespace traversal
{

Visitor::~Visitor() = default;

void Visitor::OnAbsentObject(const Member&) {}

} // namespace traversal
} // namespace ooxml
