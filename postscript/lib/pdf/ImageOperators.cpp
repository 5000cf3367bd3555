#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/DictionarySet.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

void ImageBytes::append(const char* bytes, std::size_t length) {
    if (length == 0) return;
    std::memcpy(reserve(length), bytes, length);
    size_ += length;
}

void ImageBytes::interleave(const std::string& first, const std::string& second,
                            const std::string& third) {
    const std::size_t length = first.size();
    char* out = reserve(3 * length);
    for (std::size_t i = 0; i < length; ++i) {
        *out++ = first[i];
        *out++ = second[i];
        *out++ = third[i];
    }
    size_ += 3 * length;
}

char* ImageBytes::reserve(std::size_t more) {
    if (capacity_ - size_ < more) {
        // Doubling keeps the copies of a long image linear in its size.
        std::size_t wanted = capacity_ < 4096 ? 4096 : capacity_ * 2;
        if (wanted - size_ < more) wanted = size_ + more;
        void* grown = std::realloc(bytes_, wanted);
        if (!grown) throw std::bad_alloc();
        bytes_ = static_cast<char*>(grown);
        capacity_ = wanted;
    }
    return bytes_ + size_;
}

unsigned char* ImageBytes::release() {
    // A record keeps its data for the life of the job: no spare room.
    if (capacity_ > size_ && size_ > 0)
        if (void* fitted = std::realloc(bytes_, size_)) bytes_ = static_cast<char*>(fitted);
    auto* block = reinterpret_cast<unsigned char*>(bytes_);
    bytes_ = nullptr;
    size_ = capacity_ = 0;
    return block;
}

void ImageBytes::clear() {
    std::free(bytes_);
    bytes_ = nullptr;
    size_ = capacity_ = 0;
}

namespace {

// The colour space of an image kind, by the name a dictionary or an inline
// image gives it.
const char* colorSpaceName(int32_t kind, bool inlineImage) {
    switch (kind) {
    case 0:
        return inlineImage ? "RGB" : "DeviceRGB";
    case 2:
        return inlineImage ? "CMYK" : "DeviceCMYK";
    case 3:
        return inlineImage ? "G" : "DeviceGray";
    default:
        PS_THROW("unsupported colorspace for images");
    }
}

int32_t integerEntry(const DictionaryData& dictionary, const char* key, const char* failure) {
    const IntegerObject* value = objectAs<IntegerObject>(dictionary.findText(key));
    if (!value) PS_THROW(failure);
    return value->value;
}

// Multiplies as 32-bit integers do, wrapping on overflow.
int32_t wrappingProduct(std::initializer_list<int32_t> factors) {
    uint32_t product = 1;
    for (int32_t factor : factors)
        product *= static_cast<uint32_t>(factor);
    return static_cast<int32_t>(product);
}

} // namespace

void Imager::clearImage() {
    dataSourceCount = 1;
    imageData.clear();
    filterText.clear();
    componentCount = 0;
    imageColorKind = -1;
    dataSource.reset();
    imageMatrix.reset();
}

void Imager::startRound(Interpreter& interpreter, NameObject& self) {
    inProgress = 1;
    interpreter.executionStack->push(&self);
    PostscriptObject* source = dataSource.get();
    interpreter.executionStack->push(source);
    // A string lands on the operand stack as it is; an array runs its
    // elements, and procedures among them run in turn.
    source->executable = true;
    if (ArrayObject* array = objectAs<ArrayObject>(source)) {
        array->execIndex = 0;
        for (PostscriptObject* element : array->items().items)
            armProcedure(element);
    }
}

void Imager::finishRound(Interpreter& interpreter, NameObject& self, Postscript2Pdf& pdf) {
    inProgress = 0;
    switch (componentCount) {
    case 1:
        imageColorKind = 3;
        break;
    case 3:
        imageColorKind = 0;
        break;
    case 4:
        imageColorKind = 2;
        break;
    default:
        // Not an image after all: what the source left stays where it is.
        imageColorKind = -1;
        return;
    }
    ObjectStack& operands = *interpreter.operandStack;
    if (dataSourceCount == 1) {
        Popped<StringObject> piece = operands.pop<StringObject>("popStringObject");
        const StringData& data = *piece->stringData();
        filterText.clear();
        if (!data.filters.empty()) {
            filterText = "/Filter [";
            for (const std::string& name : data.filters) {
                filterText += " /";
                filterText += name;
            }
            filterText += "] ";
        }
        imageData.append(data.text.data(), data.text.size());
    } else if (dataSourceCount == 3) {
        // The last source's string is on top: its samples go first.
        Popped<StringObject> first = operands.pop<StringObject>("popStringObject");
        Popped<StringObject> second = operands.pop<StringObject>("popStringObject");
        Popped<StringObject> third = operands.pop<StringObject>("popStringObject");
        if (first->text().size() != second->text().size() ||
            first->text().size() != third->text().size())
            PS_THROW("exepecting strings to be same size");
        imageData.interleave(first->text(), second->text(), third->text());
    } else {
        PS_THROW("unsupported image color seperation");
    }

    // The size knows nothing of row padding or of filters.
    const int32_t needed = wrappingProduct({bitsPerComponent, height, componentCount, width}) / 8;
    if (static_cast<int64_t>(imageData.size()) >= needed) {
        writeImage(pdf);
        clearImage();
        return;
    }
    if (dataSource->type == ps_string) PS_THROW("invalid data in image, excpecting proc");
    startRound(interpreter, self);
}

void Imager::writeImage(Postscript2Pdf& pdf) {
    const int32_t kind = imageColorKind == -1 ? pdf.currentState().colorKind : imageColorKind;
    const std::size_t size = imageData.size();
    if (size > pdf.inlineImageLimit && !pdf.insidePattern) {
        const char* space = colorSpaceName(kind, false);
        PdfObjectList& objects = *pdf.pdfObjects;
        const auto* bytes = reinterpret_cast<const unsigned char*>(imageData.data());
        PdfObject* record = objects.findObject(imageObjectKind, bytes, size);
        if (!record) {
            char dictionary[300];
            std::snprintf(dictionary, sizeof dictionary,
                          "/Type /XObject /Subtype /Image /BitsPerComponent %d /Width %d "
                          "/Height %d /ColorSpace /%s %s",
                          bitsPerComponent, width, height, space, filterText.c_str());
            const std::size_t textLength = std::strlen(dictionary) + 1;
            auto* text = static_cast<char*>(std::malloc(textLength));
            if (!text) throw std::bad_alloc();
            std::memcpy(text, dictionary, textLength);
            record = objects.addObject(imageObjectKind, "/PSI");
            record->dictionaryText = text;
            record->uncompressed = filterText.empty() ? 1 : 0;
            objects.setData(record, imageData.release(), size);
        }
        pdf.appendContent(record->name, std::strlen(record->name));
        pdf.appendContent(" Do\n", 4);
        return;
    }
    char head[160];
    const int length = std::snprintf(head, sizeof head, "q BI\n/W %d /H %d /BPC %d /CS /%s ", width,
                                     height, bitsPerComponent, colorSpaceName(kind, true));
    pdf.appendContent(head, static_cast<std::size_t>(length));
    pdf.appendContent(filterText.data(), filterText.size());
    pdf.appendContent("\nID\n", 4);
    pdf.appendContent(imageData.data(), size);
    pdf.appendContent("\nEI\nQ\n", 6);
}

// width height bits matrix source image -   or   dict image -
void ImageOperator::execute(Interpreter& interpreter) {
    if (inProgress) {
        finishRound(interpreter, *this, *pdf);
        return;
    }
    clearImage();
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> top = operands.popHeld();
    if (const DictionaryObject* dictionary = objectAs<DictionaryObject>(top.get())) {
        const DictionaryData& entries = *dictionary->dictionaryData();
        PostscriptObject* source = entries.findText("DataSource");
        if (!source) PS_THROW("expecting datasource");
        width = integerEntry(entries, "Width", "expecting width");
        height = integerEntry(entries, "Height", "expecting height");
        bitsPerComponent = integerEntry(entries, "BitsPerComponent", "expecting bitsPerComponent");
        const ArrayObject* decode = objectAs<ArrayObject>(entries.findText("Decode"));
        if (!decode) PS_THROW("exepected deocde array in image dict");
        componentCount = static_cast<int32_t>(decode->items().size() / 2);
        const BooleanObject* multiple =
            objectAs<BooleanObject>(entries.findText("MultipleDataSources"));
        if (multiple && multiple->value) dataSourceCount = componentCount;
        dataSource.reset(source);
    } else {
        imageMatrix.reset(operands.pop<ArrayObject>("image").get());
        // Level one says one component; the current colour says otherwise here.
        switch (pdf->currentState().colorKind) {
        case 0:
        case 1:
            componentCount = 3;
            break;
        case 2:
            componentCount = 4;
            break;
        case 3:
            componentCount = 1;
            break;
        default:
            PS_THROW("unsupported colorspace");
        }
        bitsPerComponent = operands.pop<IntegerObject>("popIntegerObject")->value;
        height = operands.pop<IntegerObject>("popIntegerObject")->value;
        width = operands.pop<IntegerObject>("popIntegerObject")->value;
        dataSource = std::move(top);
    }
    startRound(interpreter, *this);
}

// width height bits matrix source(s) multi ncomp colorimage -
void ColorimageOperator::execute(Interpreter& interpreter) {
    if (inProgress) {
        finishRound(interpreter, *this, *pdf);
        return;
    }
    clearImage();
    ObjectStack& operands = *interpreter.operandStack;
    componentCount = operands.pop<IntegerObject>("popIntegerObject")->value;
    const bool multiple = operands.pop<BooleanObject>("popBooleanObject")->value;
    if (!multiple || componentCount < 2) {
        dataSourceCount = multiple ? componentCount : 1;
        dataSource = operands.popHeld();
    } else {
        // The sources in operand order, the first at the array's start.
        dataSourceCount = componentCount;
        std::vector<Popped<>> popped;
        for (int32_t i = 0; i < componentCount; ++i)
            popped.push_back(operands.popHeld());
        Popped<ArrayObject> sources(interpreter.makeArray());
        for (auto source = popped.rbegin(); source != popped.rend(); ++source)
            sources->items().push(source->get());
        dataSource = std::move(sources);
    }
    imageMatrix.reset(operands.pop<ArrayObject>("colorimage").get());
    bitsPerComponent = operands.pop<IntegerObject>("popIntegerObject")->value;
    height = operands.pop<IntegerObject>("popIntegerObject")->value;
    width = operands.pop<IntegerObject>("popIntegerObject")->value;
    startRound(interpreter, *this);
}

// width height polarity matrix source imagemask -   always inline, in one
// pass: the source is never run, only its literal string is found.
void ImagemaskOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> source = operands.popHeld();
    PostscriptObject* found = source.get();
    if (const ArrayObject* array = objectAs<ArrayObject>(found))
        found = array->items().empty() ? nullptr : array->items().items.front();
    else if (const NameObject* name = objectAs<NameObject>(found))
        found = interpreter.dictionaries->lookupName(name->atom);
    const StringObject* maskString = objectAs<StringObject>(found);
    if (!maskString) PS_THROW("Could not find image mask data source string");
    operands.pop<ArrayObject>("imagemask");
    const bool polarity = operands.pop<BooleanObject>("imagemask")->value;
    const int32_t height = operands.pop<IntegerObject>("imagemask height")->value;
    const int32_t width = operands.pop<IntegerObject>("imagemask width")->value;
    const StringData& data = *maskString->stringData();
    if (data.text.empty()) return;
    char head[120];
    const int length =
        std::snprintf(head, sizeof head, "BI\n/W %d /H %d /BPC 1 /ImageMask true /Decode %s ",
                      width, height, polarity ? "[1 0]" : "[0 1]");
    pdf->appendContent(head, static_cast<std::size_t>(length));
    if (!data.filters.empty()) {
        // Not the blanks of image's filter text: "/Filter [/ASCII85Decode ] ".
        std::string filters = "/Filter [";
        for (const std::string& name : data.filters) {
            filters += '/';
            filters += name;
            filters += ' ';
        }
        filters += "] ";
        pdf->appendContent(filters.data(), filters.size());
    }
    pdf->appendContent("\nID\n", 4);
    pdf->appendContent(data.text.data(), data.text.size());
    pdf->appendContent("\nEI\n", 4);
}
