// An index in an SQLite file.
#pragma once

#include "host/index/index.h"

#include <memory>
#include <string>

namespace host {

/// The index in an SQLite file. The path is taken as it stands.
class SqliteIndex : public Index {
  public:
    explicit SqliteIndex(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] std::string name() const override { return path_; }
    [[nodiscard]] std::string options() const override { return "--index " + path_; }
    [[nodiscard]] std::unique_ptr<IndexConnection> connect() const override;
    [[nodiscard]] std::unique_ptr<NewIndex> replace(CheckInterrupt check_interrupt = [] {}) const override;

  private:
    std::string path_;
};

}  // namespace host
