#pragma once

#include "core/PostscriptObject.h"
#include "pdf/Postscript2PdfObject.h"

#include <cstddef>
#include <cstdint>
#include <string>

struct PdfObject;

// The bytes of an image as they come, round by round. The block is the C
// heap's and grows by realloc, so that a large image grows in place and its
// finished block becomes a record's data without another copy.
class ImageBytes {
public:
    ImageBytes() = default;
    ~ImageBytes() { clear(); }
    ImageBytes(const ImageBytes&) = delete;
    ImageBytes& operator=(const ImageBytes&) = delete;

    void append(const char* bytes, std::size_t length);
    // Three strings of one length, a byte of each in turn.
    void interleave(const std::string& first, const std::string& second, const std::string& third);
    // The block for a new owner, who frees it; this is empty afterwards.
    unsigned char* release();
    void clear();

    const char* data() const { return bytes_; }
    std::size_t size() const { return size_; }

private:
    char* reserve(std::size_t more);

    char* bytes_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

// The one image under way of image or colorimage, kept in the operator
// itself. A round pushes the operator under its data source on the execution
// stack; when the source has run the operator comes back, takes what the
// source delivered, and writes the image once enough has come.
class Imager {
protected:
    // Forgets the image, as at its start.
    void clearImage();
    // Runs the source once more, with the operator coming back after it.
    void startRound(Interpreter& interpreter, NameObject& self);
    // The operator back from a round.
    void finishRound(Interpreter& interpreter, NameObject& self, Postscript2Pdf& pdf);

    int32_t width = 0;
    int32_t height = 0;
    int32_t bitsPerComponent = 0;
    int32_t inProgress = 0;
    int32_t dataSourceCount = 1;
    // 0 RGB, 2 CMYK, 3 gray; -1: the current state's colorKind.
    int32_t imageColorKind = -1;
    int32_t componentCount = 0;
    ImageBytes imageData;
    Counted<> dataSource;
    std::string filterText;
    Counted<> imageMatrix; // taken and dropped: the current matrix places the image

private:
    void writeImage(Postscript2Pdf& pdf);
};

// image and colorimage: a graphics operator that is an Imager.
#define KEL_IMAGER_OPERATOR(Class)                                                                 \
    class Class : public NameObject, public Postscript2PdfObject, public Imager {                  \
    public:                                                                                        \
        Class(const NameAtom* atom, Postscript2Pdf& pdf)                                           \
            : NameObject(atom), Postscript2PdfObject(pdf) {}                                       \
        void execute(Interpreter& interpreter) override;                                           \
    }

// makepattern runs twice for one pattern: before the pattern's PaintProc,
// which it puts on the execution stack over itself, and after it, when the
// cell the procedure drew is cut out of the content into the record.
#define KEL_MAKEPATTERN_OPERATOR(Class)                                                            \
    class Class : public NameObject, public Postscript2PdfObject {                                 \
    public:                                                                                        \
        Class(const NameAtom* atom, Postscript2Pdf& pdf)                                           \
            : NameObject(atom), Postscript2PdfObject(pdf) {}                                       \
        void execute(Interpreter& interpreter) override;                                           \
                                                                                                   \
    private:                                                                                       \
        void beginPattern(Interpreter& interpreter);                                               \
        void endPattern();                                                                         \
                                                                                                   \
        uint64_t contentStart = 0;                                                                 \
        Counted<> patternDictionary;                                                               \
        PdfObject* patternObject = nullptr;                                                        \
        /* The list's generation when the record was made: an emptied list */                      \
        /* has taken the record with it. */                                                        \
        uint64_t listGeneration = 0;                                                               \
    }
