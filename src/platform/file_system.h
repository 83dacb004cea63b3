#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The component's view of files: the few operations the manager needs, so that tests can hand in
// a file system in memory or one that fails on command. Every operation that can fail raises
// Failure with a number of the classic run time: 52 bad name, 53 file not found, 57 device error,
// 61 disk full, 67 too many files, 70 permission denied (also: a file copied onto itself), 75 path
// or file access (a folder where a file is expected), 76 path not found.

namespace tessary {

// A file opened for reading.
class FileReader {
 public:
  virtual ~FileReader() = default;
  // The next bytes, at most `size`, into `buffer`; 0 at the end of the file.
  virtual std::size_t Read(char* buffer, std::size_t size) = 0;
  // The number of bytes that are likely still to come; a hint for reserving memory.
  virtual std::size_t SizeHint() const = 0;
};

// A file whose contents are being replaced as a whole. Until Commit is called, the file holds what
// it held before; until it returns too, unless the replacement works in place. An object that is
// destroyed without a commit removes what it created beside the file.
class FileReplacement {
 public:
  virtual ~FileReplacement() = default;
  // Appends to the new contents, in large pieces as they may be written one by one.
  virtual void Write(std::string_view bytes) = 0;
  // Commit still brings the new contents to the disk first, but need not wait until the disk knows
  // of the exchange: for files that can be made again, or where FlushNames follows. A power cut
  // before may leave the old file.
  virtual void DeferName() {}
  // Brings the new contents to the disk already, after the last Write, so that Commit has less to
  // do. A hint: without effect where the replacement works in place.
  virtual void Prepare() {}
  // Brings the new contents to the disk and puts them in the file's place, with owner,
  // permissions and attributes kept. May be called once.
  virtual void Commit() = 0;
  // True once the file itself has been overwritten in part, so that a failure now leaves it
  // damaged.
  virtual bool Damaged() const = 0;
};

// Keeps other runs away from a folder as long as it lives; the system ends it with the process.
class FolderLock {
 public:
  virtual ~FolderLock() = default;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // True when `path` names an existing file, or an existing folder; links are followed.
  virtual bool FileExists(const std::string& path) = 0;
  virtual bool FolderExists(const std::string& path) = 0;

  // The names of the files in `folder` (no folders, no service files such as temporary ones),
  // ordered by name without regard to case, ties by bytes.
  virtual std::vector<std::string> ListFiles(const std::string& folder) = 0;

  virtual std::unique_ptr<FileReader> OpenForReading(const std::string& path) = 0;

  // Opens `path` for being replaced, without touching it; a missing file is created by Commit.
  // Fails where the file could not be written: read-only, no permission, a folder, no such path.
  // A link is followed: its target is replaced and the link stays. Where no file can be created
  // beside the target, or the target has several names (hard links), the replacement works in
  // place.
  virtual std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) = 0;

  // How many bytes a file beside `path`, links followed, could take; 0 where that cannot be told.
  virtual std::uint64_t RoomBeside(const std::string&) { return 0; }

  // Copies the contents of `from` to `to`, replacing what `to` held; the copy is on the disk when
  // the call returns. `to` is replaced as a whole or stays as it was.
  // Failure 70 when both are the same file, also by way of links.
  virtual void CopyFile(const std::string& from, const std::string& to) = 0;

  // The same without replacing anything, whatever other runs do at the same time: false when `to`
  // holds something else than `from`; true when it is, or already was, a copy and on the disk.
  virtual bool AddCopy(const std::string& from, const std::string& to);

  // Gives a file another name in the same folder; Failure 58 when `to` exists.
  virtual void RenameFile(const std::string& from, const std::string& to) = 0;

  // True when both files can be read and hold the same bytes.
  virtual bool SameContents(const std::string& a, const std::string& b) = 0;

  // Creates one folder; its parent must exist.
  virtual void CreateFolder(const std::string& path) = 0;

  // Brings to the disk what replacements in `folder` that deferred it have put there; never fails.
  virtual void FlushNames(const std::string&) {}

  // Null when another run holds `folder`. A folder that cannot be locked gives a lock that keeps
  // nobody away: whether it can be worked in shows in what is done there. Never fails.
  virtual std::unique_ptr<FolderLock> TryLockFolder(const std::string& folder) = 0;

  // Raise what OpenForReplacing or CreateFolder would, as far as it shows beforehand, and create
  // nothing.
  virtual void CheckReplacing(const std::string& path) { OpenForReplacing(path); }
  virtual void CheckCreatingFolder(const std::string& path);

  // A text that all paths of one existing file share (links, letter case) and no other file has;
  // empty when there is no such file.
  virtual std::string IdentityOf(const std::string& path);

  // A text that is another one once the file is another one or has been written to, as far as the
  // system's clock tells; empty where that cannot be told, or when there is no such file.
  virtual std::string StampOf(const std::string&) { return {}; }

  // True when both paths name one folder, by whatever name; equal paths do even where there is
  // none.
  virtual bool SameFolder(const std::string& a, const std::string& b);

  // Removes what a run that died may have left in `folder`; never fails.
  virtual void RemoveLeftovers(const std::string& folder) = 0;

  // The value of a key as the system's profile-string reader gives it, at most 2047 characters;
  // empty when the file, the section or the key is missing.
  virtual std::string ReadProfileString(const std::string& path, std::string_view section,
                                        std::string_view key) = 0;
  // The values of several keys of a section, in the order of the keys.
  virtual std::vector<std::string> ReadProfileStrings(const std::string& path,
                                                      std::string_view section,
                                                      std::span<const std::string_view> keys);
};

// The whole contents of a file.
std::string ReadWholeFile(FileReader& file);

// Its first bytes, fewer than `size` where it ends before.
std::string ReadBeginning(FileReader& file, std::size_t size);

// True when both files hold the same bytes from where they have been read to on.
bool SameBytes(FileReader& a, FileReader& b);

// The file system of this computer; lives as long as the process. Several threads may use it.
FileSystem& SystemFiles();

}  // namespace tessary
