#pragma once

#include <string>

// Makes the folder path with all its parents. True when the path already exists (folder or
// not), or when every part now exists as a folder or was asked to be made. Parts are joined
// with "/", and empty parts vanish, so "\\server\share\x" is made as "server/share/x" under
// the current directory.
bool createDirectoryPath(const std::u16string& path);
