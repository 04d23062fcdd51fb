#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/** An empty folder, removed with all that is in it. */
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = "/tmp/layersXXXXXX";
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};
