#pragma once

#include <string>

/** A folder of its own that vanishes with the object. */
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path(const std::string& name) const { return folder_ + "/" + name; }
    std::string Write(const std::string& name, const std::string& content) const;
    std::string Read(const std::string& name) const;

  private:
    std::string folder_;
};

/** A pipe with a name, for news from a process that is nobody's child. */
class NewsPipe {
  public:
    explicit NewsPipe(std::string path);
    ~NewsPipe();
    NewsPipe(const NewsPipe&) = delete;
    NewsPipe& operator=(const NewsPipe&) = delete;

    const std::string& path() const { return path_; }
    /** Everything up to the writer's end; "no news" when it never shows up. */
    std::string ReadAll() const;

  private:
    std::string path_;
    int descriptor_;
};
