#include "files/OutputPlace.h"

#include "files/AtomicFile.h"
#include "files/Folder.h"

namespace {

class Disk final : public OutputPlace {
  public:
    Result<Done> makeFolder(const QString& path) override { return Folder::create(path); }
    Result<Done> write(const QString& path, const QByteArray& bytes) override {
        return AtomicFile::write(path, bytes);
    }
};

} // namespace

OutputPlace& OutputPlace::disk() {
    static Disk disk;
    return disk;
}
