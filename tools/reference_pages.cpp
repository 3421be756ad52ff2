// Writes docs/reference/: one page a class, from the method table.
//
//     reference_pages FOLDER
//
// The folder must exist. Exit status 1 when a page cannot be written.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "catalogue/catalogue.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {
namespace {

constexpr const char* generatedNote = "<!-- Generated from the method table by `./dev docs`. Do not edit. -->\n\n";

std::string shownDefault(const ParameterDescription& parameter) {
  if (!parameter.optional) return "";
  const Value& value = parameter.defaultValue;
  if (value.isMissing()) return "missing";
  if (value.isNothing()) return "nothing";
  if (const auto* text = value.get<std::string>()) return sql("\"", *text, "\"");
  return toText(value);
}

std::string shownDirection(const ParameterDescription& parameter) {
  std::string text = parameter.direction == Direction::in ? "in" : "in/out";
  return parameter.optional ? text + ", optional" : text;
}

void writeMethod(std::ostream& out, const MethodDescription& method) {
  out << "## " << method.name << "\n\n" << method.summary << "\n\n";
  if (method.isProperty) {
    out << "Read-only property, " << typeName(method.result) << ". Dispatch number " << method.id << ".\n\n";
    return;
  }
  out << "Result: " << typeName(method.result) << ". Dispatch number " << method.id << ".\n\n"
      << "| Parameter | Type | Direction | Default |\n|---|---|---|---|\n";
  for (const ParameterDescription& parameter : method.parameters) {
    out << "| `" << parameter.name << "` | " << typeName(parameter.type) << " | " << shownDirection(parameter) << " | "
        << shownDefault(parameter) << " |\n";
  }
  out << '\n';
}

std::string classPage(const ClassDescription& description) {
  std::ostringstream page;
  page << generatedNote << "# " << description.name << "\n\n"
       << description.summary << " `TransMode` " << static_cast<std::int32_t>(description.transMode) << ".\n\n";
  for (const MethodDescription& method : description.methods) writeMethod(page, method);
  std::string text = page.str();
  text.pop_back();
  return text;
}

std::string indexPage() {
  std::ostringstream page;
  page << generatedNote << "# Classes\n\n| Class | TransMode | Methods | |\n|---|---|---|---|\n";
  for (const ClassDescription& description : classes()) {
    page << "| [" << description.name << "](" << description.name << ".md) | "
         << static_cast<std::int32_t>(description.transMode) << " | " << description.methods.size() - 1 << " | "
         << description.summary << " |\n";
  }
  return page.str();
}

bool write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  return static_cast<bool>(file.flush());
}

}  // namespace
}  // namespace tolvane

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: reference_pages FOLDER\n";
    return 1;
  }
  const std::filesystem::path folder = arguments[1];
  bool written = tolvane::write(folder / "README.md", tolvane::indexPage());
  for (const auto& description : tolvane::classes()) {
    written = tolvane::write(folder / (description.name + ".md"), tolvane::classPage(description)) && written;
  }
  if (!written) std::cerr << "reference_pages: cannot write to " << folder << '\n';
  return written ? 0 : 1;
}
