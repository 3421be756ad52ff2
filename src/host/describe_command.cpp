#include "host/describe_command.h"

#include "catalogue/catalogue.h"
#include "host/call_request.h"
#include "host/text_table.h"
#include "host/value_view.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

using tracing::Json;

std::string_view directionName(Direction direction) {
  return direction == Direction::in ? "in" : "in/out";
}

Json toJson(const ParameterDescription& parameter) {
  Json json = Json::object();
  json["name"] = parameter.name;
  json["type"] = typeName(parameter.type);
  json["direction"] = directionName(parameter.direction);
  json["optional"] = parameter.optional;
  if (parameter.optional && !parameter.defaultValue.isMissing()) {
    json["default"] = tracing::traceToJson(parameter.defaultValue);
  }
  return json;
}

Json toJson(const MethodDescription& method) {
  Json json = Json::object();
  json["name"] = method.name;
  json["id"] = method.id;
  json["summary"] = method.summary;
  json["isProperty"] = method.isProperty;
  json["parameters"] = Json::array();
  for (const auto& parameter : method.parameters) json["parameters"].push_back(toJson(parameter));
  json["result"] = typeName(method.result);
  return json;
}

Json toJson(const ClassDescription& description) {
  Json json = Json::object();
  json["name"] = description.name;
  json["TransMode"] = static_cast<std::int32_t>(description.transMode);
  json["summary"] = description.summary;
  return json;
}

std::string defaultText(const ParameterDescription& parameter) {
  if (!parameter.optional) return "required";
  const Value& value = parameter.defaultValue;
  if (value.isMissing()) return "optional";
  return value.get<std::string>() ? "\"" + shortText(value) + "\"" : value.isEmpty() ? "(empty)" : shortText(value);
}

void describe(std::ostream& out, const ClassDescription& description, const MethodDescription& method) {
  out << description.name << '.' << method.name << (method.isProperty ? " (property)" : "") << " -> "
      << typeName(method.result) << "\n  " << method.summary << '\n';
  if (method.parameters.empty()) return;
  TextTable table({"parameter", "type", "direction", "default"});
  for (const auto& parameter : method.parameters) {
    table.addRow({{parameter.name, false, false},
                  {std::string(typeName(parameter.type)), false, false},
                  {std::string(directionName(parameter.direction)), false, false},
                  {defaultText(parameter), false, false}});
  }
  table.print(out);
}

}  // namespace

int runClassesCommand(const Environment& environment, bool asJson) {
  if (asJson) {
    Json list = Json::array();
    for (const auto& description : classes()) list.push_back(toJson(description));
    environment.out << list.dump() << '\n';
    return exitDone;
  }
  TextTable table({"class", "TransMode", "summary"});
  for (const auto& description : classes()) {
    table.addRow({{description.name, false, false},
                  {std::to_string(static_cast<std::int32_t>(description.transMode)), true, false},
                  {description.summary, false, false}});
  }
  table.print(environment.out);
  return exitDone;
}

int runDescribeCommand(const Environment& environment, const std::string& classOrMethod, bool asJson) {
  const CallRequest member = readMember(classOrMethod);
  const auto& description = *member.serviceClass;
  if (asJson) {
    Json json = toJson(description);
    json["methods"] = Json::array();
    for (const auto& method : description.methods) {
      if (!member.method || member.method == &method) json["methods"].push_back(toJson(method));
    }
    environment.out << json.dump() << '\n';
    return exitDone;
  }
  if (member.method) {
    describe(environment.out, description, *member.method);
    return exitDone;
  }
  environment.out << description.name << ", TransMode " << static_cast<std::int32_t>(description.transMode) << "\n  "
                  << description.summary << '\n';
  for (const auto& method : description.methods) {
    environment.out << '\n';
    describe(environment.out, description, method);
  }
  return exitDone;
}

}  // namespace tolvane::host
