#include "foundation/document/IconwrightDocumentMember.hpp"

#include <cstdio>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

void IconwrightDocumentMember::attachDocumentAssociation(IconwrightDocumentMember& member) const {
  if (const auto current = document()) member.associateWithDocument(current);
}

void IconwrightDocumentMember::detachDocumentAssociation(IconwrightDocumentMember& member) const {
  member.disassociateWithDocument();
}

void IconwrightDocumentMember::associateWithDocument(const std::shared_ptr<IconwrightDocument>& document) {
  setDocument(document);
  for (const auto& child : children()) child->associateWithDocument(document);
}

void IconwrightDocumentMember::disassociateWithDocument() {
  for (const auto& child : children()) child->disassociateWithDocument();
  setDocument(nullptr);
}

std::string IconwrightDocumentMember::tagDescription(std::string_view kind, std::string_view name,
                                                     const void* address) {
  char identifier[32];
  std::snprintf(identifier, sizeof identifier, "%p", address);
  std::string text = "<";
  text.append(kind).append(" name=\"").append(name).append("\" id=\"").append(identifier).append("\">");
  return text;
}

void IconwrightDocumentMember::failNotAMember() {
  ICONWRIGHT_FATAL("IconwrightDocumentMember", "Key path of another member type");
}

}  // namespace iconwright
