#include "FakePlatform.h"

#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>

#include "HardwareVersion.h"
#include "PlatformLog.h"
#include "Storage.h"

FakePlatform& fakePlatform() {
    static FakePlatform platform;
    return platform;
}

std::vector<std::string> FakePlatform::logTexts() const {
    std::vector<std::string> texts;
    for (const LogLine& line : log) {
        texts.push_back(line.text);
    }
    return texts;
}

bool loggingOnAppZel(const char* module, int level) {
    ++fakePlatform().switchQuestions;
    return fakePlatform().loggingOn.count({module, level}) != 0;
}

void logAppZel(const char* module, const char* sourceFile, int level, int, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    if (fakePlatform().logFails) {
        throw std::bad_alloc();
    }
    fakePlatform().log.push_back({module, sourceFile, level, text});
}

namespace Storage {

std::uint32_t UserDiskSpace(const std::string& directory) {
    fakePlatform().askedDirectory = directory;
    return fakePlatform().freeSpace;
}

std::uint32_t fileSize(std::string path) {
    const auto found = fakePlatform().fileSizes.find(path);
    return found == fakePlatform().fileSizes.end() ? 0 : found->second;
}

void deleteFile_noEx(const std::string& path) {
    fakePlatform().deletedFiles.push_back(path);
    std::error_code ignored;
    if (!std::filesystem::is_directory(path, ignored)) {
        std::filesystem::remove(path, ignored);
    }
}

}  // namespace Storage

namespace HardwareVersion {

bool is_NQ() {
    return fakePlatform().isNq;
}

int getHWSubPlatformVariant() {
    return fakePlatform().hardwareVariant;
}

}  // namespace HardwareVersion
