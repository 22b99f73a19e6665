#include "ui/FileManager.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace zentrill {

FileManager::FileManager(QString busAddress, QObject* parent)
    : QObject(parent), busAddress_(std::move(busAddress)) {}

FileManager::~FileManager() = default;

void FileManager::look() {
    setThere(true);
}

void FileManager::show(const std::string& path) {
    NSURL* item = [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
    [[NSWorkspace sharedWorkspace] activateFileViewerSelectingURLs:@[ item ]];
}

void FileManager::setThere(bool isThere) {
    if (isThere != isThere_) {
        isThere_ = isThere;
        Q_EMIT isThereChanged();
    }
}

} // namespace zentrill
