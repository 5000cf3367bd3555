#pragma once

#include <cstdint>
#include <string>

// The user's name as the launcher's object names carry it: GetUserNameW, else USERNAME.
std::u16string launcherUserName();

// "Local\<word>_<user>" ("<word>_<user>" before major version 5): the launcher of this session.
std::u16string plainLauncherBase(std::u16string_view baseWord);
// "Session\<id>\<word>_<user>": the launcher of another session, from major version 6.
std::u16string sessionLauncherBase(std::u16string_view baseWord, std::uint32_t sessionId);
// "Global\<word>_<user>" ("<word>_<user>" before major version 5): a launcher of the old version.
std::u16string oldVersionLauncherBase(std::u16string_view baseWord);
