/* Domain texts (domaintext.h), by the names that the node software uses. */
#ifndef NODETEXT_H
#define NODETEXT_H

#include "domaintext.h"
#include "resourceclass.h"

namespace node {

using records::DomainFacts;
using records::DomainText;
using records::MAX_TEXT_ERRORS;
using records::NodeFacts;
using records::parse_domain_text;
using records::read_domain_file;
using records::TextNode;
using records::TextRecord;
using records::TextResource;

} // namespace node

#endif
