#pragma once

// The fixed frame of every packet, written out, and the clock and GUIDs of the in-memory
// system, so that a row states only what it changes.

#include "platform/WideText.h"

#include <string>

namespace testing_support {

// The fake's clock (2026-03-05 14:07:09) with bias 0, and its first two GUIDs.
inline const std::string fakeNow = "2026-03-05T14:07:09Z";
inline const std::string firstGuid = "12345678-9abc-4def-8001-020304050601";
inline const std::string secondGuid = "12345679-9abc-4def-8001-020304050602";

inline const std::string packetHead =
    "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
    "<x:xmpmeta xmlns:x='adobe:ns:meta/'>\n"
    "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' "
    "xmlns:iX='http://ns.adobe.com/iX/1.0/'>\n";

// The document id, any invoice block, and the end.
inline std::string packetTail(const std::string& guid, const std::string& invoice = "") {
    return "<rdf:Description rdf:about='' xmlns:xapMM='http://ns.adobe.com/xap/1.0/mm/'>"
           "<xapMM:DocumentID>uuid:" +
           guid + "</xapMM:DocumentID></rdf:Description>" + invoice +
           "</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end='w'?>\n";
}

inline std::string utf8(std::u16string_view text) {
    return platform::toUtf8(text);
}

} // namespace testing_support
