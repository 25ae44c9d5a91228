#include "files/InputFile.h"

#include <algorithm>
#include <filesystem>
#include <QFile>

namespace pointloom {

const InputFile* replacedInput(const QString& path, const std::vector<InputFile>& inputs) {
    const std::string output = QFile::encodeName(path).toStdString();
    const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const InputFile& input) {
        std::error_code error; // one that does not exist is no other's equal
        return std::filesystem::equivalent(output, QFile::encodeName(input.path).toStdString(), error);
    });
    return found == inputs.end() ? nullptr : &*found;
}

}
