// The invoice data and its PDF/A extension schema, in both forms, byte for byte.

#include "metadata/InvoiceSchemas.h"
#include "metadata/PacketText.h"
#include "umpd/FakeOs.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace testing_support;

namespace {

// The extension block of both forms, with holes for what differs.
const std::string extensionTemplate = R"(
<rdf:Description rdf:about="" xmlns:pdfaExtension="http://www.aiim.org/pdfa/ns/extension/" xmlns:pdfaSchema="http://www.aiim.org/pdfa/ns/schema#" xmlns:pdfaProperty="http://www.aiim.org/pdfa/ns/property#"{more}>
    <pdfaExtension:schemas>
    <rdf:Bag>
        <rdf:li rdf:parseType="Resource">
        <pdfaSchema:schema>{schema}</pdfaSchema:schema>
        <pdfaSchema:namespaceURI>{namespace}</pdfaSchema:namespaceURI>
        <pdfaSchema:prefix>{prefix}</pdfaSchema:prefix>
        <pdfaSchema:property>
            <rdf:Seq>
            <rdf:li rdf:parseType="Resource">
                <pdfaProperty:name>DocumentFileName</pdfaProperty:name>
                <pdfaProperty:valueType>Text</pdfaProperty:valueType>
                <pdfaProperty:category>external</pdfaProperty:category>
                <pdfaProperty:description>name of the embedded XML invoice file</pdfaProperty:description>
            </rdf:li>
            <rdf:li rdf:parseType="Resource">
                <pdfaProperty:name>DocumentType</pdfaProperty:name>
                <pdfaProperty:valueType>Text</pdfaProperty:valueType>
                <pdfaProperty:category>external</pdfaProperty:category>
                <pdfaProperty:description>INVOICE</pdfaProperty:description>
            </rdf:li>
            <rdf:li rdf:parseType="Resource">
                <pdfaProperty:name>Version</pdfaProperty:name>
                <pdfaProperty:valueType>Text</pdfaProperty:valueType>
                <pdfaProperty:category>external</pdfaProperty:category>
                <pdfaProperty:description>The actual version of the ZUGFeRD XML schema</pdfaProperty:description>
            </rdf:li>
            <rdf:li rdf:parseType="Resource">
                <pdfaProperty:name>ConformanceLevel</pdfaProperty:name>
                <pdfaProperty:valueType>Text</pdfaProperty:valueType>
                <pdfaProperty:category>external</pdfaProperty:category>
                <pdfaProperty:description>{levelDescription}</pdfaProperty:description>
            </rdf:li>
            </rdf:Seq>
        </pdfaSchema:property>
        </rdf:li>
    </rdf:Bag>
    </pdfaExtension:schemas>
</rdf:Description>
)";

const std::string dataTemplate = R"(
<rdf:Description xmlns:{prefix}="{namespace}" rdf:about="">
<{prefix}:ConformanceLevel>{level}</{prefix}:ConformanceLevel>
<{prefix}:DocumentFileName>{fileName}</{prefix}:DocumentFileName>
<{prefix}:DocumentType>INVOICE</{prefix}:DocumentType>
<{prefix}:Version>{version}</{prefix}:Version>
</rdf:Description>
)";

const std::string zugferd = "urn:ferd:pdfa:CrossIndustryDocument:invoice:1p0#";
const std::string facturX = "urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#";
const std::string fieldAndType = R"( xmlns:pdfaField="http://www.aiim.org/pdfa/ns/field#")"
                                 R"( xmlns:pdfaType="http://www.aiim.org/pdfa/ns/type#")";

struct Form {
    std::string more, schema, namespaceUri, prefix, levelDescription;
};

const Form zugferdForm{"", "ZUGFeRD PDFA Extension Schema", zugferd, "zf",
                       "The conformance level of the embedded ZUGFeRD data"};
const Form facturXForm{fieldAndType, "Factur-x PDFA Extension Schema", facturX, "fx",
                       "The conformance level of the ZUGFeRD data"};

// Every "{name}" of the text replaced by its value.
std::string filled(std::string text,
                   const std::vector<std::pair<std::string, std::string>>& holes) {
    for (const auto& [name, value] : holes) {
        auto hole = "{" + name + "}";
        for (auto at = text.find(hole); at != std::string::npos;
             at = text.find(hole, at + value.size()))
            text.replace(at, hole.size(), value);
    }
    return text;
}

struct InvoiceRow {
    const char* name;
    std::u16string level, version, fileName;
    const Form* form;                        // null: nothing at all
    std::string level8, fileName8, version8; // as they stand in the data block
};

class Invoice : public ::testing::TestWithParam<InvoiceRow> {};

TEST_P(Invoice, IsTheFormItsValuesSelect) {
    const auto& row = GetParam();
    std::string expected;
    if (row.form) {
        const auto& f = *row.form;
        expected = filled(dataTemplate, {{"prefix", f.prefix},
                                         {"namespace", f.namespaceUri},
                                         {"level", row.level8},
                                         {"fileName", row.fileName8},
                                         {"version", row.version8}}) +
                   filled(extensionTemplate, {{"more", f.more},
                                              {"schema", f.schema},
                                              {"namespace", f.namespaceUri},
                                              {"prefix", f.prefix},
                                              {"levelDescription", f.levelDescription}});
    }
    EXPECT_EQ(utf8(buildInvoiceSchemas(row.level, row.version, row.fileName)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, Invoice,
    ::testing::Values(
        // The ZUGFeRD form keeps its own file name and version.
        InvoiceRow{"Zugferd", u"BASIC", u"", u"mine.xml", &zugferdForm, "BASIC",
                   "ZUGFeRD-invoice.xml", "1.0"},
        InvoiceRow{"FacturX", u"EN 16931", u"1.0", u"factur-x.xml", &facturXForm, "EN 16931",
                   "factur-x.xml", "1.0"},
        // The values go in as they are: a "<" is not escaped.
        InvoiceRow{"Unescaped", u"A<B", u"2.1&", u"", &facturXForm, "A<B", "", "2.1&"},
        InvoiceRow{"NonAsciiLevel", u"\u00e9\U0001F600", u"", u"", &zugferdForm, "\u00e9\U0001F600",
                   "ZUGFeRD-invoice.xml", "1.0"},
        InvoiceRow{"NoLevel", u"", u"1.0", u"factur-x.xml", nullptr, "", "", ""},
        InvoiceRow{"NothingAtAll", u"", u"", u"", nullptr, "", "", ""}),
    rowName);

} // namespace
