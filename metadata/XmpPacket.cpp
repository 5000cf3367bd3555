#include "metadata/XmpPacket.h"

#include "metadata/InvoiceSchemas.h"
#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/NameMacros.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace {
constexpr std::u16string_view rdfNamespace = u"http://www.w3.org/1999/02/22-rdf-syntax-ns#";
constexpr std::u16string_view iXNamespace = u"http://ns.adobe.com/iX/1.0/";
constexpr std::u16string_view pdfNamespace = u"http://ns.adobe.com/pdf/1.3/";
constexpr std::u16string_view xapNamespace = u"http://ns.adobe.com/xap/1.0/";
constexpr std::u16string_view dcNamespace = u"http://purl.org/dc/elements/1.1/";
constexpr std::u16string_view pdfaidNamespace = u"http://www.aiim.org/pdfa/ns/id/";
constexpr std::u16string_view xapMMNamespace = u"http://ns.adobe.com/xap/1.0/mm/";

// The wcsftime buffer the date is written into, terminator included.
constexpr std::size_t dateCapacity = 47;

void appendEscaped(std::u16string& out, std::u16string_view head, std::u16string_view text,
                   std::u16string_view tail) {
    out.append(head).append(xmlEscape(text)).append(tail);
}
} // namespace

std::u16string xmlEscape(std::u16string_view text) {
    static constexpr std::pair<char16_t, std::u16string_view> entities[] = {
        {u'"', u"&quot;"}, {u'&', u"&amp;"}, {u'\'', u"&apos;"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}};
    std::u16string out;
    out.reserve(text.size());
    for (char16_t c : text) {
        auto entity = std::find_if(std::begin(entities), std::end(entities),
                                   [c](const auto& e) { return e.first == c; });
        if (entity != std::end(entities)) {
            out += entity->second;
        } else if (c < 32) {
            // Every control unit as a reference, though XML 1.0 admits only tab, LF and CR.
            char reference[16];
            std::snprintf(reference, sizeof reference, "&#x%x;", static_cast<unsigned>(c));
            out += platform::fromUtf8(reference);
        } else {
            out += c;
        }
    }
    return out;
}

std::u16string formatXmpDate(const std::optional<std::tm>& local, std::int32_t biasMinutes) {
    // A clock that cannot say gives what a failed format gives: no date and no zone.
    if (!local) return {};
    auto text = formatTime(u"%Y-%m-%dT%H:%M:%S", *local, biasMinutes, dateCapacity);
    if (!text || text->empty()) return {};
    if (biasMinutes == 0) return *text + u"Z";
    // In 64 bits, so that a bias of INT_MIN has a magnitude too: "+35791394:08".
    auto magnitude = biasMinutes < 0 ? -static_cast<std::int64_t>(biasMinutes)
                                     : static_cast<std::int64_t>(biasMinutes);
    char zone[32];
    std::snprintf(zone, sizeof zone, "%c%02d:%02d", biasMinutes < 0 ? '+' : '-',
                  static_cast<int>(magnitude / 60), static_cast<int>(magnitude % 60));
    return *text + platform::fromUtf8(zone);
}

std::u16string formatXmpDate() {
    auto& system = platform::current().system();
    auto local = system.localTime();
    return formatXmpDate(local, system.timeZoneBias());
}

std::u16string newGuidText() {
    auto guid = platform::current().system().createGuid();
    if (!guid) return {};
    const auto& d = guid->data4;
    char text[48];
    std::snprintf(text, sizeof text, "%.08x-%.04x-%.04x-%.02x%.02x-%.02x%.02x%.02x%.02x%.02x%.02x",
                  static_cast<unsigned>(guid->data1), static_cast<unsigned>(guid->data2),
                  static_cast<unsigned>(guid->data3), d[0], d[1], d[2], d[3], d[4], d[5], d[6],
                  d[7]);
    return platform::fromUtf8(text);
}

std::u16string buildXmpPacket(std::u16string_view title, std::u16string_view author,
                              std::u16string_view subject, std::u16string_view keywords,
                              std::u16string_view producer, std::u16string_view creatorTool,
                              std::uint32_t pdfaPart, std::u16string_view invoiceLevel,
                              std::u16string_view invoiceVersion,
                              std::u16string_view invoiceFileName, std::u16string_view createDate,
                              std::u16string_view modifyDate) {
    std::u16string out;
    // The begin attribute is empty on purpose: the packet carries no byte order mark.
    out.append(u"<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
               u"<x:xmpmeta xmlns:x='adobe:ns:meta/'>\n<rdf:RDF xmlns:rdf='")
        .append(rdfNamespace)
        .append(u"' xmlns:iX='")
        .append(iXNamespace)
        .append(u"'>\n");

    if (!producer.empty() || !keywords.empty()) {
        out.append(u"<rdf:Description rdf:about='' xmlns:pdf='")
            .append(pdfNamespace)
            .append(u"'\n");
        if (!producer.empty()) appendEscaped(out, u"pdf:Producer='", producer, u"'\n");
        if (!keywords.empty()) appendEscaped(out, u"pdf:Keywords='", keywords, u"'\n");
        out.append(u"/>\n");
    }

    out.append(u"<rdf:Description rdf:about='' xmlns:xap='").append(xapNamespace).append(u"'\n");
    if (!creatorTool.empty()) appendEscaped(out, u"xap:CreatorTool='", creatorTool, u"'\n");
    // The clock is read once for both dates, so that they agree to the second.
    std::optional<std::u16string> now;
    std::u16string modified(modifyDate);
    if (modified.empty()) modified = now.emplace(formatXmpDate());
    out.append(u"xap:ModifyDate='").append(modified).append(u"'\n");
    std::u16string created(createDate);
    if (created.empty()) created = now ? *now : formatXmpDate();
    out.append(u"xap:CreateDate='").append(created).append(u"'\n/>\n");

    if (!title.empty() || !author.empty() || !subject.empty()) {
        out.append(u"<rdf:Description rdf:about='' xmlns:dc='").append(dcNamespace).append(u"'>\n");
        if (!title.empty())
            appendEscaped(out, u"<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>", title,
                          u"</rdf:li></rdf:Alt></dc:title>\n");
        if (!author.empty())
            appendEscaped(out, u"<dc:creator><rdf:Seq><rdf:li>", author,
                          u"</rdf:li></rdf:Seq></dc:creator>\n");
        if (!subject.empty())
            appendEscaped(out, u"<dc:description><rdf:Alt><rdf:li xml:lang='x-default'>", subject,
                          u"</rdf:li></rdf:Alt></dc:description>\n");
        out.append(u"</rdf:Description>\n");
    }

    if (pdfaPart != 0) {
        // "%d": a part beyond 31 bits shows as the negative number the setting held.
        char part[16];
        std::snprintf(part, sizeof part, "%d", static_cast<std::int32_t>(pdfaPart));
        out.append(u"<rdf:Description rdf:about='' xmlns:pdfaid='")
            .append(pdfaidNamespace)
            .append(u"'\npdfaid:part='")
            .append(platform::fromUtf8(part))
            .append(u"'\npdfaid:conformance='B'\n/>\n");
    }

    out.append(u"<rdf:Description rdf:about='' xmlns:xapMM='")
        .append(xapMMNamespace)
        .append(u"'><xapMM:DocumentID>uuid:")
        .append(newGuidText())
        .append(u"</xapMM:DocumentID></rdf:Description>");

    out.append(buildInvoiceSchemas(invoiceLevel, invoiceVersion, invoiceFileName));
    out.append(u"</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end='w'?>\n");
    return out;
}
