#include "metadata/InvoiceSchemas.h"

#include <string_view>

namespace {
constexpr std::string_view zugferdNamespace = "urn:ferd:pdfa:CrossIndustryDocument:invoice:1p0#";
constexpr std::string_view facturXNamespace =
    "urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#";
constexpr std::string_view pdfaExtensionNamespace = "http://www.aiim.org/pdfa/ns/extension/";
constexpr std::string_view pdfaSchemaNamespace = "http://www.aiim.org/pdfa/ns/schema#";
constexpr std::string_view pdfaPropertyNamespace = "http://www.aiim.org/pdfa/ns/property#";
constexpr std::string_view pdfaFieldNamespace = "http://www.aiim.org/pdfa/ns/field#";
constexpr std::string_view pdfaTypeNamespace = "http://www.aiim.org/pdfa/ns/type#";

// What tells the two forms apart, besides the values a caller gives.
struct InvoiceForm {
    std::string_view prefix;
    std::string_view namespaceUri;
    std::string_view schemaName;
    std::string_view levelDescription;
    bool declaresFieldAndType;
};

// "Factur-x" and the differing descriptions are the names readers know; they stay.
constexpr InvoiceForm zugferdForm{"zf", zugferdNamespace, "ZUGFeRD PDFA Extension Schema",
                                  "The conformance level of the embedded ZUGFeRD data", false};
constexpr InvoiceForm facturXForm{"fx", facturXNamespace, "Factur-x PDFA Extension Schema",
                                  "The conformance level of the ZUGFeRD data", true};

// Templates are ASCII, so each byte widens to its unit.
void put(std::u16string& out, std::string_view text) {
    out.append(text.begin(), text.end());
}
void put(std::u16string& out, std::u16string_view text) {
    out.append(text);
}

// indent spaces, then "<tag>value</tag>" and a line feed.
template <typename Value>
void element(std::u16string& out, std::size_t indent, std::string_view prefix,
             std::string_view name, const Value& value) {
    out.append(indent, u' ');
    put(out, "<");
    put(out, prefix);
    put(out, name);
    put(out, ">");
    put(out, value);
    put(out, "</");
    put(out, prefix);
    put(out, name);
    put(out, ">\n");
}

void appendInvoiceData(std::u16string& out, const InvoiceForm& form, std::u16string_view level,
                       std::u16string_view fileName, std::u16string_view version) {
    put(out, "\n<rdf:Description xmlns:");
    put(out, form.prefix);
    put(out, "=\"");
    put(out, form.namespaceUri);
    put(out, "\" rdf:about=\"\">\n");
    const std::string prefix = std::string(form.prefix) + ":";
    element(out, 0, prefix, "ConformanceLevel", level);
    element(out, 0, prefix, "DocumentFileName", fileName);
    element(out, 0, prefix, "DocumentType", "INVOICE");
    element(out, 0, prefix, "Version", version);
    put(out, "</rdf:Description>\n");
}

void appendExtensionSchema(std::u16string& out, const InvoiceForm& form) {
    // The line feed of its own leaves an empty line after the data block.
    put(out, "\n<rdf:Description rdf:about=\"\"");
    auto declare = [&out](std::string_view prefix, std::string_view uri) {
        put(out, " xmlns:");
        put(out, prefix);
        put(out, "=\"");
        put(out, uri);
        put(out, "\"");
    };
    declare("pdfaExtension", pdfaExtensionNamespace);
    declare("pdfaSchema", pdfaSchemaNamespace);
    declare("pdfaProperty", pdfaPropertyNamespace);
    if (form.declaresFieldAndType) {
        declare("pdfaField", pdfaFieldNamespace);
        declare("pdfaType", pdfaTypeNamespace);
    }
    put(out, ">\n"
             "    <pdfaExtension:schemas>\n"
             "    <rdf:Bag>\n"
             "        <rdf:li rdf:parseType=\"Resource\">\n");
    element(out, 8, "pdfaSchema:", "schema", form.schemaName);
    element(out, 8, "pdfaSchema:", "namespaceURI", form.namespaceUri);
    element(out, 8, "pdfaSchema:", "prefix", form.prefix);
    put(out, "        <pdfaSchema:property>\n"
             "            <rdf:Seq>\n");
    const std::string_view properties[][2] = {
        {"DocumentFileName", "name of the embedded XML invoice file"},
        {"DocumentType", "INVOICE"},
        {"Version", "The actual version of the ZUGFeRD XML schema"},
        {"ConformanceLevel", form.levelDescription},
    };
    for (const auto& [name, description] : properties) {
        put(out, "            <rdf:li rdf:parseType=\"Resource\">\n");
        element(out, 16, "pdfaProperty:", "name", name);
        element(out, 16, "pdfaProperty:", "valueType", "Text");
        element(out, 16, "pdfaProperty:", "category", "external");
        element(out, 16, "pdfaProperty:", "description", description);
        put(out, "            </rdf:li>\n");
    }
    put(out, "            </rdf:Seq>\n"
             "        </pdfaSchema:property>\n"
             "        </rdf:li>\n"
             "    </rdf:Bag>\n"
             "    </pdfaExtension:schemas>\n"
             "</rdf:Description>\n");
}
} // namespace

std::u16string buildInvoiceSchemas(std::u16string_view level, std::u16string_view version,
                                   std::u16string_view fileName) {
    if (level.empty()) return {};
    std::u16string out;
    if (version.empty()) {
        // The ZUGFeRD form fixes its file name and version, whatever the caller has.
        constexpr std::string_view zugferdFileName = "ZUGFeRD-invoice.xml";
        constexpr std::string_view zugferdVersion = "1.0";
        appendInvoiceData(out, zugferdForm, level,
                          std::u16string(zugferdFileName.begin(), zugferdFileName.end()),
                          std::u16string(zugferdVersion.begin(), zugferdVersion.end()));
        appendExtensionSchema(out, zugferdForm);
    } else {
        appendInvoiceData(out, facturXForm, level, fileName, version);
        appendExtensionSchema(out, facturXForm);
    }
    return out;
}
