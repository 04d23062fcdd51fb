#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/** A temporary directory. The destructor removes it with its contents. */
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = "/tmp/layersXXXXXX";
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot create a temporary directory");
        path_ = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path(const std::string& name) const { return path_ + "/" + name; }

    /** Writes a file and returns its path. */
    std::string Write(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name)) << content;
        return Path(name);
    }

    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::string path_;
};
