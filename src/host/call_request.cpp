#include "host/call_request.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "catalogue/catalogue.h"
#include "host/nearest_name.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "host/value_codec.h"

namespace tolvane::host {
namespace {

template <typename Items>
std::vector<std::string> namesOf(const Items& items) {
  std::vector<std::string> names;
  for (const auto& item : items) names.push_back(item.name);
  return names;
}

Bytes readFile(const std::string& name) {
  std::error_code error;
  const auto size = std::filesystem::file_size(name, error);
  std::ifstream file(name, std::ios::binary);
  if (error || !file) throw UsageError("The file " + name + " cannot be read.");
  return Bytes::filled(static_cast<std::size_t>(size), [&](std::span<std::uint8_t> out) {
    file.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    if (!file && !out.empty()) throw UsageError("The file " + name + " cannot be read to its end.");
  });
}

const ParameterDescription& parameterNamed(const CallRequest& request, const std::string& name) {
  const auto& parameters = request.method->parameters;
  const auto found = std::find_if(parameters.begin(), parameters.end(), [&](const ParameterDescription& parameter) {
    return sameName(parameter.name, name);
  });
  if (found != parameters.end()) return *found;
  const std::string method = request.serviceClass->name + "." + request.method->name;
  throw UsageError(method + " has no parameter " + name + "." + suggestion(name, namesOf(parameters)) +
                   " \"tolvane describe " + method + "\" lists its parameters.");
}

Value valueOf(const ParameterDescription& parameter, const std::string& text) {
  if (text.starts_with('@')) return readFile(text.substr(1));
  try {
    return decodeValue(parseJson(text), parameter.type);
  } catch (const UsageError& error) {
    // Text without quotes is the usual slip.
    throw UsageError("The value of " + parameter.name + " cannot be used: " + error.what() +
                     " Values are JSON: 5, true, \"text\" (with its quotes, so in a shell '" + parameter.name +
                     "=\"text\"'), null, or @FILE for the bytes of a file.");
  }
}

bool isGiven(const CallRequest& request, const std::string& name) {
  const auto& named = request.arguments.named;
  return std::any_of(named.begin(), named.end(), [&](const auto& argument) { return sameName(argument.first, name); });
}

void readAssignment(CallRequest& request, const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos || !isUtf8(std::string_view(assignment).substr(0, equals))) {
    throw UsageError("\"" + assignment + "\" is not of the form parameter=JSON.");
  }
  const auto& parameter = parameterNamed(request, assignment.substr(0, equals));
  if (isGiven(request, parameter.name)) throw UsageError("The parameter " + parameter.name + " is given twice.");
  request.arguments.named.emplace_back(parameter.name, valueOf(parameter, assignment.substr(equals + 1)));
}

void fillIn(CallRequest& request, const std::optional<std::string>& dsn) {
  const auto& parameters = request.method->parameters;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const auto& parameter = parameters[i];
    if (isGiven(request, parameter.name)) continue;
    if (i == 0) {
      if (!dsn) {
        throw UsageError("No data source is named: give --dsn TEXT, set TOLVANE_DSN, or give " + parameter.name +
                         "=\"...\" (for example --dsn Database=demo.db).");
      }
      if (!isUtf8(*dsn)) throw UsageError("The data-source name is not UTF-8.");
      request.arguments.named.emplace_back(parameter.name, *dsn);
    } else if (parameter.direction == Direction::inOut) {
      request.arguments.named.emplace_back(parameter.name, emptyValue(parameter.type));
    }
  }
}

}  // namespace

CallRequest readMember(const std::string& classOrMethod) {
  if (!isUtf8(classOrMethod)) throw UsageError("The name of the class is not UTF-8.");
  const std::size_t point = std::min(classOrMethod.find('.'), classOrMethod.size());
  const std::string className = classOrMethod.substr(0, point);
  CallRequest request;
  request.serviceClass = findClass(className);
  if (!request.serviceClass) {
    throw UsageError("There is no class " + className + "." + suggestion(className, namesOf(classes())) +
                     " \"tolvane classes\" lists them.");
  }
  if (point == classOrMethod.size()) return request;
  const std::string methodName = classOrMethod.substr(point + 1);
  request.method = request.serviceClass->find(methodName);
  if (!request.method) {
    throw UsageError(request.serviceClass->name + " has no method " + methodName + "." +
                     suggestion(methodName, namesOf(request.serviceClass->methods)) + " \"tolvane describe " +
                     request.serviceClass->name + "\" lists its methods.");
  }
  return request;
}

CallRequest readCall(const std::string& classAndMethod, const std::vector<std::string>& assignments,
                     const std::optional<std::string>& dsn) {
  CallRequest request = readMember(classAndMethod);
  if (!request.method) {
    throw UsageError("Which method of " + request.serviceClass->name + "? Write CLASS.METHOD. \"tolvane describe " +
                     request.serviceClass->name + "\" lists its methods.");
  }
  for (const auto& assignment : assignments) readAssignment(request, assignment);
  fillIn(request, dsn);
  return request;
}

}  // namespace tolvane::host
