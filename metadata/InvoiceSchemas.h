#pragma once

#include <string>
#include <string_view>

// The invoice data and the PDF/A extension schema that declares it: empty without a level,
// the ZUGFeRD form without a version, else the Factur-X form. The three texts go in as they
// are, unescaped.
std::u16string buildInvoiceSchemas(std::u16string_view level, std::u16string_view version,
                                   std::u16string_view fileName);
