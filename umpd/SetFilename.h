#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class PrinterConfig;

// The output file's path, from the document name, the printer's settings and the save action.
class SetFilename {
public:
    static constexpr std::size_t templateChars = 520;
    static constexpr std::size_t extensionChars = 40; // room for every extension the limit lets in
    static constexpr std::size_t docNameChars = 260;
    static constexpr std::size_t pathChars = 260;

    SetFilename(PrinterConfig* config, std::uint32_t action) : config(config), action(action) {}
    virtual ~SetFilename() = default;

    // Names the file into out, which holds at most outSize - 1 characters. docName is the
    // job's and may come back as the sanitised file name. True when the folder exists or
    // was made.
    bool setOutputFilename(std::u16string& docName, std::u16string& out, std::size_t outSize,
                           std::uint32_t action);
    // Appends the file name made of docName to out, in at most capacity - 1 characters, and
    // puts the name back into docName.
    void appendDocName(std::u16string& docName, std::u16string& out, std::size_t capacity);
    // The save folder with its separator, "C:\" when it does not fit, empty when none is set.
    void getDirectory(std::u16string& out, std::size_t capacity);

    // Tests start from a fresh process, whose generator is not yet seeded.
    static void forgetRandomSeed();

    PrinterConfig* config; // borrowed
    std::uint32_t action;
    char16_t trimChar = u'-';
    std::u16string defaultSaveFilename; // below templateChars
    std::u16string defaultExtension = u".pdf";
    std::u16string defaultSaveDir; // below templateChars

private:
    void readSettings();
    void readTemplateFile();
    void randomName(std::u16string& out, std::size_t outSize);
    void numberedName(std::u16string& docName, std::u16string& out, std::size_t outSize);
};

// A path of more than 260 characters cut to 259: the folder gives way first, then the name,
// and the extension stays.
std::u16string repairLongPath(std::u16string_view path);
