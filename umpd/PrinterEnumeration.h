#pragma once

#include "platform/Spooler.h"

#include <string>

// A walk over the printers: found returns true to stop it.
class PrinterIteratorCallback {
public:
    virtual ~PrinterIteratorCallback() = default;
    virtual bool found(const platform::PrinterInfo2* info) = 0;
};

// Walks the local printers and connections in the spooler's order.
void enumeratePrinters(PrinterIteratorCallback& callback);

// The printer of this product's driver whose port (or name), with "\" read as ",",
// is the port form asked for.
class FindPort : public PrinterIteratorCallback {
public:
    FindPort(std::u16string& resultName, std::u16string_view portName)
        : resultName(resultName), portName(portName) {}
    bool found(const platform::PrinterInfo2* info) override;

    std::u16string& resultName; // at most 259 characters
    std::u16string_view portName;
};
