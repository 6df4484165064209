#include "platform/posix/unpack/unpack_archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace pintle {
namespace {

using Problem = std::optional<std::string>;

constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr int kWriting = ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                         ARCHIVE_EXTRACT_SECURE_NOABSOLUTEPATHS;

struct Closing {
    void operator()(archive* of) const { archive_free(of); }
};
using Archive = std::unique_ptr<archive, Closing>;

std::string wordsOf(archive* of) {
    const char* text = archive_error_string(of);
    return text && *text ? text : "Unknown error";
}

/// A reader that knows the readable kinds alone; absent when this library would start a program for one.
Archive makeReader() {
    Archive reader(archive_read_new());
    if (!reader) return nullptr;
    for (const auto support :
         {archive_read_support_filter_gzip, archive_read_support_filter_bzip2, archive_read_support_filter_xz,
          archive_read_support_format_tar, archive_read_support_format_zip})
        if (support(reader.get()) != ARCHIVE_OK) return nullptr;
    return reader;
}

/// A tar inside one compression at most, or a zip inside none: the kinds as they are meant.
bool isReadableKind(archive* reader) {
    // The last filter is the file itself.
    const int compressions = archive_filter_count(reader) - 1;
    const bool zip = (archive_format(reader) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_ZIP;
    return compressions <= (zip ? 0 : 1);
}

std::string_view withoutSlashes(std::string_view path) {
    while (path.starts_with('/')) path.remove_prefix(1);
    return path;
}

/// Nothing that does more than hold bytes or a name once it is there.
bool mayBeMade(archive_entry* entry) {
    if (archive_entry_hardlink(entry)) return true;
    const auto kind = archive_entry_filetype(entry);
    return kind == AE_IFREG || kind == AE_IFDIR || kind == AE_IFLNK || kind == AE_IFIFO;
}

/// Takes from the entry all that is not to be restored.
void plain(archive_entry* entry) {
    // Careless writers give folders no right to be entered, and nobody can measure what nobody can list.
    const unsigned owner = archive_entry_filetype(entry) == AE_IFDIR ? S_IRWXU : S_IRUSR | S_IWUSR;
    archive_entry_set_perm(entry, (archive_entry_perm(entry) & 0777) | owner);
    archive_entry_unset_atime(entry);
    archive_entry_unset_birthtime(entry);
    archive_entry_unset_ctime(entry);
    archive_entry_unset_mtime(entry);
    archive_entry_acl_clear(entry);
    archive_entry_xattr_clear(entry);
    archive_entry_set_fflags(entry, 0, 0);
}

/// Makes one entry; `called` is its name for messages.
Problem make(archive* reader, archive* writer, archive_entry* entry, const std::string& called) {
    const char* path = archive_entry_pathname(entry);
    if (!path) return "Pathname cannot be read";
    const std::string inside(withoutSlashes(path));
    // The top folder itself, as "./" and "/" say it.
    if (inside.empty()) return std::nullopt;
    if (!mayBeMade(entry)) return called + ": Can't create a file of this kind";
    archive_entry_set_pathname(entry, inside.c_str());
    if (const char* target = archive_entry_hardlink(entry)) {
        const std::string below(withoutSlashes(target));
        archive_entry_set_hardlink(entry, below.c_str());
    }
    plain(entry);
    const int done = archive_read_extract2(reader, entry, writer);
    if (done == ARCHIVE_OK) return std::nullopt;
    // The reader repeats the writer's words.
    return called + ": " + wordsOf(reader);
}

Problem unpackEntries(archive* reader) {
    const Archive writer(archive_write_disk_new());
    if (!writer || archive_write_disk_set_options(writer.get(), kWriting) != ARCHIVE_OK)
        return "Out of memory";
    while (true) {
        archive_entry* entry = nullptr;
        const int got = archive_read_next_header(reader, &entry);
        if (got == ARCHIVE_EOF) break;
        if (!isReadableKind(reader)) return "Error opening archive: Unrecognized archive format";
        if (got != ARCHIVE_OK) return wordsOf(reader);
        const char* name = archive_entry_pathname(entry);
        if (auto problem = make(reader, writer.get(), entry, name ? name : "")) return problem;
    }
    // Folders get their permissions here.
    if (archive_write_close(writer.get()) != ARCHIVE_OK) return wordsOf(writer.get());
    return std::nullopt;
}

struct GzipClosing {
    void operator()(gzFile_s* of) const { gzclose_r(of); }
};

/// The reading above looks at no checksum of gzip, so the whole file is read once more for it.
Problem checkGzip(int file) {
    std::array<unsigned char, 2> head = {};
    if (::pread(file, head.data(), head.size(), 0) != static_cast<ssize_t>(head.size())) return std::nullopt;
    if (head[0] != 0x1f || head[1] != 0x8b) return std::nullopt;
    if (::lseek(file, 0, SEEK_SET) != 0) return "Read error";
    const int copy = ::fcntl(file, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<gzFile_s, GzipClosing> stream(copy < 0 ? nullptr : gzdopen(copy, "rb"));
    if (!stream) return "Out of memory";
    std::array<char, kBlock> block;
    int got = 0;
    do got = gzread(stream.get(), block.data(), static_cast<unsigned>(block.size()));
    while (got > 0);
    int code = Z_OK;
    const char* words = gzerror(stream.get(), &code);
    if (got == 0 && code == Z_OK) return std::nullopt;
    return std::string("gzip: ") + (words && *words ? words : "damaged data");
}

}  // namespace

std::optional<std::string> unpackArchive(int archive) {
    const auto reader = makeReader();
    if (!reader) return "This libarchive cannot read tar, zip, gzip, bzip2 and xz by itself";
    if (archive_read_open_fd(reader.get(), archive, kBlock) != ARCHIVE_OK)
        return "Error opening archive: " + wordsOf(reader.get());
    if (auto problem = unpackEntries(reader.get())) return problem;
    return checkGzip(archive);
}

}  // namespace pintle
