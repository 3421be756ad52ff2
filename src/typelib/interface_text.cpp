#include "typelib/interface_text.h"

#include <array>
#include <sstream>
#include <string_view>

#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "typelib/identifiers.h"

namespace tolvane::typelib {
namespace {

constexpr std::string_view modes = "TransactionMode";

/// The type as a dispatch interface states it, by ParameterType's order.
constexpr std::array<std::string_view, parameterTypeCount> idlTypes{"void",
                                                                    "VARIANT_BOOL",
                                                                    "long",
                                                                    "BSTR",
                                                                    "DATE",
                                                                    "VARIANT",
                                                                    "IDispatch*",
                                                                    "IDispatch*",
                                                                    "IDispatch*",
                                                                    "IDispatch*",
                                                                    "SAFEARRAY(long)",
                                                                    "SAFEARRAY(VARIANT)"};

std::string_view idlType(ParameterType type) {
  return idlTypes[static_cast<std::size_t>(type)];
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

/// A default that the language can state; variants and objects are simply optional.
std::string defaultText(const ParameterDescription& parameter) {
  switch (parameter.type) {
    case ParameterType::int32:
      return sql("defaultvalue(", toInt32(parameter.defaultValue), ")");
    case ParameterType::boolean:
      return toBoolean(parameter.defaultValue) ? "defaultvalue(-1)" : "defaultvalue(0)";
    case ParameterType::string:
      return "defaultvalue(" + quoted(toText(parameter.defaultValue)) + ")";
    default:
      return "optional";
  }
}

std::string parameterText(const ParameterDescription& parameter) {
  const bool inOut = parameter.direction == Direction::inOut;
  std::string text = inOut ? "[in, out" : "[in";
  if (parameter.optional) text += ", " + (inOut ? std::string("optional") : defaultText(parameter));
  text += "] ";
  text += idlType(parameter.type);
  text += inOut ? "* " : " ";
  return text + parameter.name;
}

std::string methodText(const MethodDescription& method) {
  std::string text = sql("    [id(", method.id, "), helpstring(", quoted(method.summary), ")]\n    ",
                         idlType(method.result), " ", method.name, "(");
  std::string_view between = "\n        ";
  for (const ParameterDescription& parameter : method.parameters) {
    text += between;
    text += parameterText(parameter);
    between = ",\n        ";
  }
  return text + ");\n";
}

/// A property of a dispatch interface takes no help text.
std::string propertyText(const MethodDescription& property) {
  return sql("    [id(", property.id, "), readonly] ", modes, " ", property.name, ";\n");
}

void writeClass(std::ostream& out, const ClassDescription& description) {
  out << "\n  [uuid(" << text(interfaceIdentifier(description.name)) << "), helpstring(" << quoted(description.summary)
      << ")]\n  dispinterface _" << description.name << " {\n  properties:\n";
  for (const MethodDescription& method : description.methods) {
    if (method.isProperty) out << propertyText(method);
  }
  out << "  methods:\n";
  for (const MethodDescription& method : description.methods) {
    if (!method.isProperty) out << methodText(method);
  }
  out << "  };\n\n  [uuid(" << text(classIdentifier(description.name)) << "), helpstring("
      << quoted(description.summary) << ")]\n  coclass " << description.name << " {\n    [default] dispinterface _"
      << description.name << ";\n  };\n";
}

}  // namespace

std::string interfaceText(std::span<const ClassDescription> classes) {
  std::ostringstream out;
  out << "// Generated from the method table by `./dev docs`. Do not edit.\n"
      << "import \"oaidl.idl\";\n\n"
      << "[uuid(" << text(libraryIdentifier()) << "), version(" << majorVersion << '.' << minorVersion
      << "), helpstring(\"Data service of the accounting suite's financial reports\")]\n"
      << "library " << libraryName << " {\n  importlib(\"stdole2.tlb\");\n\n"
      << "  [uuid(" << text(enumerationIdentifier(modes)) << ")]\n  typedef enum " << modes << " {\n"
      << "    transactionRequired = " << static_cast<int>(TransactionMode::required) << ",\n"
      << "    transactionSupported = " << static_cast<int>(TransactionMode::supported) << "\n  } " << modes << ";\n";
  for (const ClassDescription& description : classes) writeClass(out, description);
  out << "}\n";
  return out.str();
}

}  // namespace tolvane::typelib
