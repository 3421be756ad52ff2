// Saving a report.
#include "frame/service_errors.h"
#include "frame/sql_text.h"
#include "frame/variant_record.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "reportstore/report_types.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {

/// What SavePlxToSrv was asked to store. The name has its apostrophes doubled already.
struct SrvRptUpdate::Report {
  const std::string& system;
  const std::string& name;
  const Value& document;
  const Value& printSettings;
  std::int32_t owner;
  std::int32_t year;
  std::int32_t period;
  std::int32_t type;
  Value savedAt;
  std::int16_t userID;
};

std::int32_t SrvRptUpdate::SavePlxToSrv(const std::string& sDsn, const std::string& sSysName,
                                        const std::string& sRptName, const Value& vPlx, std::int32_t lOwner,
                                        const Value& vPrinterBuf, std::int32_t lYear, std::int32_t lPeriod,
                                        std::int32_t lRptType) {
  auto call = beginWork(sDsn);
  // Doubled from here on, in the row's fields too: readers of the store rely on finding it so.
  const std::string name = doubled(sRptName);
  if (trim(name).empty()) {
    throw AutomationError(service_error::ruleViolated, "SrvRptRetrive.SavePlxToSrv",
                          translate("报表名称不得为空字符串"));
  }
  const Value savedAt = call.execute("Select GetDate() as FNow")->value("FNow");
  const std::int16_t userID = currentUserID16();
  const Report report{sSysName, name, vPlx, vPrinterBuf, lOwner, lYear, lPeriod, lRptType, savedAt, userID};
  bool isNew = false;
  std::int32_t id = storeReport(call, report, isNew);

  const auto newest = call.execute("Select Max(FRptID) FRptID From t_Rpt_Content");
  if (isNew) {
    id = toInt32(newest->value("FRptID"));
    grantCreatorRight(call, id, userID);
  }
  registerObject(call, id, name);
  finishWithMenu(call);
  return id;
}

std::int32_t SrvRptUpdate::storeReport(Call& call, const Report& report, bool& isNew) {
  const auto row = call.openKeyset(sql("Select * From T_Rpt_Content Where ", nameColumn("FRptName"), "='", report.name,
                                       "' And ", " FRptType =", report.type));
  isNew = isEmpty(*row);
  if (isNew) {
    row->addNew();
    row->setValue("FRptName", report.name);
    row->setValue("FRptName_Cht", report.name);
    row->setValue("FRptName_En", report.name);
    row->setValue("FSysName", report.system);
    row->setValue("frpttype", report.type);
  }
  row->setValue("FYear", report.year);
  row->setValue("FPeriod", report.period);
  row->setValue("FOwner", report.owner);
  row->setValue("FLastOperator", report.userID);
  row->setValue("FLastDate", report.savedAt);
  const bool isVariant = report.type == report_type::variantDocument;
  row->setValue("FRptData", isVariant ? Value(encodeVariant(platform(), report.document)) : report.document);
  if (!report.printSettings.isMissing() && !report.printSettings.isEmpty()) {
    row->setValue("FPrinterBuf", report.printSettings);
  }
  row->update();
  return isNew ? 0 : toInt32(row->value("FRptID"));
}

void SrvRptUpdate::grantCreatorRight(Call& call, std::int32_t lRptID, std::int16_t userID) {
  const auto rights = call.openKeyset("t_Rpt_Right");
  rights->addNew();
  rights->setValue("FRptID", lRptID);
  rights->setValue("FUserID", userID);
  rights->setValue("FRightCode", right_code::full);
  rights->update();
  call.complete();
}

void SrvRptUpdate::registerObject(Call& call, std::int32_t lRptID, const std::string& name) {
  const auto command = call.newTextCommand();
  command->setCommandText(
      sql("If Not Exists(Select * From t_objectType Where FObjectType=136 And FObjectID=", lRptID, " ) ",
          " Insert into t_objectType(FObjectType, FObjectID, FName,FName_Cht,FName_En) values(136,", lRptID, " ,'",
          name, "','", name, "','", name, "') Else ", " Update t_objectType Set FName='", name, "',FName_Cht='", name,
          "',FName_En='", name, "' Where FObjectType=136 And FObjectID= ", lRptID));
  (void)command->execute();

  const std::string view = translate("查看");
  const std::string viewDescription = translate("用户可查看报表");
  const std::string chart = translate("图形分析");
  const std::string chartDescription = translate("用户可查看图形分析");
  const auto accessType = [lRptID](std::string_view indexAndMask, const std::string& label, const std::string& text) {
    return sql(
        " Insert into t_ObjectAccessType "
        "(FObjectType,FObjectID,FIndex,FAccessMask,FAccessUse,FName,FDescription,FName_Cht,FName_En,FDescription_Cht,"
        "FDescription_En) values(136, ",
        lRptID, indexAndMask, label, "', '", text, "','", label, "','", label, "','", text, "','", text, "')");
  };
  command->setCommandText(sql(
      "Delete from t_ObjectAccessType Where FObjectType=136 And FObjectID=", lRptID,
      accessType(", 0, 0x2000, 0, '", view, viewDescription), accessType(", 1, 0x4000, 0, '", chart, chartDescription),
      " delete from t_objectaccess where fgroupid=251 and fobjecttype=136 and fobjectid=", lRptID,
      " Insert into t_ObjectAccess values(251,136, ", lRptID, ",0)"));
  (void)command->execute();
}

}  // namespace tolvane
