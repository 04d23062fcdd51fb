#pragma once

#include <string>

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
