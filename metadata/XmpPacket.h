#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

// The markup characters as entities, and every unit below 32 as "&#x%x;".
std::u16string xmlEscape(std::u16string_view text);

// local: the local time (nullopt when the clock cannot say); biasMinutes: UTC = local + bias.
std::u16string formatXmpDate(const std::optional<std::tm>& local, std::int32_t biasMinutes);
// Now, from the platform's clock and time zone bias.
std::u16string formatXmpDate();

// A new GUID as lower-case hexadecimal with dashes; empty when none can be had.
std::u16string newGuidText();

// The whole packet. Empty texts are left out where they are optional; empty dates are the
// present time, one text for both.
std::u16string buildXmpPacket(std::u16string_view title, std::u16string_view author,
                              std::u16string_view subject, std::u16string_view keywords,
                              std::u16string_view producer, std::u16string_view creatorTool,
                              std::uint32_t pdfaPart, std::u16string_view invoiceLevel,
                              std::u16string_view invoiceVersion,
                              std::u16string_view invoiceFileName, std::u16string_view createDate,
                              std::u16string_view modifyDate);
