// SPDX-License-Identifier: MIT
#include "scripted_host.h"

#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

bool IsOneOfTheIndices(const QString& code) {
  return code == QStringLiteral("1") || code == QStringLiteral("399001") || code == QStringLiteral("399300");
}

/// Keys a module may ask for, colours and pictures alike.
const char* const kThemeKeys[] = {"Qm_BGCorlor",
                                  "QM_TitleFontColor",
                                  "Qm_GridRowSelectColor",
                                  "Grid_SelTxtColor",
                                  "Grid_UnSelTxtColor",
                                  "KTR_HighLightColor1",
                                  "KTR_HighLightColor2",
                                  "Grid_TitleUnSelTxtColor",
                                  "Grid_TitleUpBg",
                                  "Section_BigTxtColor",
                                  "Grid_Color",
                                  "Grid_ClickTxtColor",
                                  "Grid_ClickTxtHighLightColor",
                                  "KTR_BorderColor",
                                  "ktr_gridtitlebk",
                                  "QM_EditFrameColor",
                                  "Qm_CharAxisLineColor",
                                  "Qm_GridJgColor",
                                  "Qm_KlineRedColor",
                                  "Qm_KlineBlueColor",
                                  "Qm_KlineYellowColor",
                                  "Invest_YJFJ_Gray",
                                  "Invest_YJFJ_ZeroLine",
                                  "Invest_HStart_COLOR",
                                  "Invest_HEnd_COLOR",
                                  "Invest_BStart_COLOR",
                                  "Invest_BEnd_COLOR",
                                  "GridTitle",
                                  "Qm_SaveBgPic",
                                  "Qm_SaveMovePic",
                                  "TreeListColor"};

template <typename Script>
std::shared_ptr<Script> Newest(const std::vector<std::shared_ptr<Script>>& scripts, const QString& name) {
  if (scripts.empty()) throw Error(ErrorCategory::NotFound, "no role named " + name.toStdString());
  return scripts.back();
}

}  // namespace

void ScriptedAddresses::RegisterAddressItem(std::shared_ptr<TAddressItem> item) {
  const auto sameName = [&](const auto& other) { return other->Name() == item->Name(); };
  if (std::any_of(items.begin(), items.end(), sameName)) {
    throw Error(ErrorCategory::Refused, "an address of that name is registered");
  }
  items.push_back(std::move(item));
}

void ScriptedAddresses::UnregisterAddressItem(const std::shared_ptr<TAddressItem>& item) {
  const auto found = std::find(items.begin(), items.end(), item);
  if (found == items.end()) return;
  if (item->GetIsWorkState()) item->LeaveAddress();
  items.erase(found);
}

bool ScriptedAddresses::GotoAddress(const QString& name, const QString& parameter) {
  gone.emplace_back(name, parameter);
  const auto sameName = [&](const auto& item) { return item->Name() == name; };
  return known.contains(name) || std::any_of(items.begin(), items.end(), sameName);
}

void ScriptedCodeNums::Add(const ScriptedSecurity& security) {
  securities_[security.code] = security;
}

const ScriptedSecurity* ScriptedCodeNums::Find(const QString& code) const {
  if (code.size() == 7 && !code.startsWith(QLatin1Char('1'))) return nullptr;
  if (code.size() != 6 && code.size() != 7) return nullptr;
  const auto found = securities_.find(code.right(6));
  return found == securities_.end() ? nullptr : &found->second;
}

bool ScriptedCodeNums::IsFundOrBond(const QString& code) const {
  const ScriptedSecurity* security = Find(code);
  return security != nullptr && security->isFundOrBond;
}

bool ScriptedCodeNums::IsKnownSecurity(const QString& code) const {
  return Find(code) != nullptr;
}

bool ScriptedCodeNums::IsIndex(const QString& code) const {
  return IsOneOfTheIndices(code);
}

bool ScriptedCodeNums::IsCodeNumber(const QString& text) const {
  return text.size() == 7 && Find(text) != nullptr;
}

bool ScriptedCodeNums::IsShanghaiStock(const QString& codeNumber) const {
  return IsCodeNumber(codeNumber) && Find(codeNumber)->market == 1;
}

bool ScriptedCodeNums::IsShenzhenStock(const QString& codeNumber) const {
  return IsCodeNumber(codeNumber) && Find(codeNumber)->market == 2;
}

QString ScriptedCodeNums::NameOf(const QString& code) const {
  const ScriptedSecurity* security = Find(code);
  return security == nullptr ? QString() : security->name;
}

QString ScriptedCodeNums::InitialsOf(int codeNumber) const {
  const auto found = initials.find(codeNumber);
  return found == initials.end() ? QString() : found->second;
}

QString ScriptedCodeNums::IndustryOf(int codeNumber) const {
  const ScriptedSecurity* security = Find(QString::number(codeNumber));
  return security == nullptr ? QString() : security->industry;
}

int ScriptedCodeNums::MarketTypeOf(const QString& code) const {
  const ScriptedSecurity* security = Find(code);
  return security == nullptr ? 0 : security->market;
}

std::vector<int> ScriptedCodeNums::CodeNumbersOf(int category) const {
  std::vector<int> numbers;
  if (category != 10) return numbers;
  for (const auto& [code, security] : securities_) {
    if (!security.isFundOrBond) numbers.push_back(static_cast<int>(IntegerOr(QStringLiteral("1") + code)));
  }
  return numbers;
}

void ScriptedCodeNums::SetCurrentCode(const QString& code) {
  setCodes.push_back(code);
  currentCode = code;
}

void ScriptedSystem::ShowFrame(QWidget* frame) {
  shown.emplace_back(frame);
  frame->setParent(&workArea);
  frame->setGeometry(workArea.rect());
  frame->show();
}

void ScriptedSystem::RefreshWorkArea(QWidget* part) {
  refreshed.emplace_back(part);
}

void ScriptedDebug::WriteLog(const QString& text) {
  const std::lock_guard guard(lock_);
  lines_.push_back(text);
}

void ScriptedDebug::TellFailure(const QString& text) {
  const std::lock_guard guard(lock_);
  failures_.push_back(text);
}

std::vector<QString> ScriptedDebug::Failures() const {
  const std::lock_guard guard(lock_);
  return failures_;
}

void ScriptedDebug::TellOutcome(const QString& text) {
  const std::lock_guard guard(lock_);
  outcomes_.push_back(text);
}

void ScriptedDebug::TellOngoing(const QString& text) {
  const std::lock_guard guard(lock_);
  ongoing_.push_back(text);
}

std::vector<QString> ScriptedDebug::Ongoing() const {
  const std::lock_guard guard(lock_);
  return ongoing_;
}

std::vector<QString> ScriptedDebug::Outcomes() const {
  const std::lock_guard guard(lock_);
  return outcomes_;
}

std::vector<QString> ScriptedDebug::Lines() const {
  const std::lock_guard guard(lock_);
  return lines_;
}

NowData ScriptedDataCenter::StockNowData(int codeNumber) const {
  const QString text = QString::number(codeNumber);
  const ScriptedSecurity* security = text.size() == 7 ? codeNums_.Find(text) : nullptr;
  return security == nullptr ? NowData() : security->nowData;
}

NowData ScriptedDataCenter::IndexNowData(int indexNumber) const {
  const auto found = indices.find(indexNumber);
  return found == indices.end() ? NowData() : found->second;
}

std::optional<AccountInfo> ScriptedDataCenter::StockAccountInfo(int codeNumber) const {
  const auto found = accounts.find(codeNumber);
  return found == accounts.end() ? std::nullopt : std::optional(found->second);
}

std::vector<int> ScriptedDataCenter::GetGroupCodeNumList(const QString& groupName) const {
  const auto found = groups.find(groupName);
  return found == groups.end() ? std::vector<int>() : found->second;
}

unsigned ScriptedDataCenter::BusMarketId(int marketType) const {
  const auto found = busMarketIds.find(marketType);
  return found == busMarketIds.end() ? 0 : found->second;
}

ScriptedTheme::ScriptedTheme(DebugServers& debug) : debug_(debug) {
  int number = 0;
  for (const char* key : kThemeKeys) {
    ++number;
    colors[QString::fromLatin1(key)] = QColor(number * 8, 255 - number * 4, (number * 53) % 256);
  }
}

QColor ScriptedTheme::ColorOf(const QString& key) const {
  const auto found = colors.find(key);
  if (found != colors.end()) return found->second;
  debug_.WriteLog(QStringLiteral("unknown colour key ") + key);
  return Qt::magenta;
}

std::optional<QColor> ScriptedTheme::FindColor(const QString& key) const {
  const auto found = colors.find(key);
  return found == colors.end() ? std::nullopt : std::optional(found->second);
}

void ScriptedTheme::AssignPicture(const QString& key, QLabel& image) const {
  image.setScaledContents(true);
  image.setPixmap(PictureOf(key, QSize(4, 4)));
}

QPixmap ScriptedTheme::PictureOf(const QString& key, const QSize& size) const {
  if (!colors.contains(key)) return {};
  if (QPixmap painted = paint ? paint(key, size) : QPixmap(); !painted.isNull()) return painted;
  QPixmap picture(size);
  picture.fill(ColorOf(key));
  return picture;
}

void ScriptedTheme::Switch() {
  for (auto& [key, color] : colors) color = QColor(255 - color.red(), 255 - color.green(), 255 - color.blue());
}

int ScriptedMessageBoxes::Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) {
  calls.push_back({text, caption, buttons, style});
  if (whileAsking) whileAsking();
  if (answers.empty()) return 1;
  const int answer = answers.front();
  answers.erase(answers.begin());
  return answer;
}

ScriptedTitleFrame::ScriptedTitleFrame() : clientPanel_(new QWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(clientPanel_);
  (new QVBoxLayout(clientPanel_))->setContentsMargins(0, 0, 0, 0);
}

void ScriptedTitleFrame::SplitterMoved(QSplitter* splitter) {
  moved.push_back(splitter);
}

void ScriptedTitleFrame::SplitterPaint(QSplitter* splitter) {
  painted.push_back(splitter);
}

ScriptedHost::ScriptedHost() : localDatabase_(*this), dataCenter(codeNums, localDatabase_), theme(debug) {
  system.workArea.resize(1000, 640);
}

std::unique_ptr<TDSBAsynDataDownRole> ScriptedHost::MakeDataDownRole() {
  dataDowns_.push_back(std::make_shared<ScriptedDataDown>());
  return std::make_unique<ScriptedDataDownRole>(dataDowns_.back());
}

std::unique_ptr<TDSBAsynDownFileRole> ScriptedHost::MakeDownFileRole() {
  if (makeDownFileRole) return makeDownFileRole();
  downFiles_.push_back(std::make_shared<ScriptedDownFile>(SysWorkDataPath()));
  return std::make_unique<ScriptedDownFileRole>(downFiles_.back());
}

std::unique_ptr<TFrmQMTitle> ScriptedHost::MakeTitleFrame() {
  auto frame = std::make_unique<ScriptedTitleFrame>();
  titleFrames.emplace_back(frame.get());
  return frame;
}

std::vector<std::shared_ptr<ScriptedDataDown>> ScriptedHost::DataDowns(const QString& componentName) const {
  std::vector<std::shared_ptr<ScriptedDataDown>> named;
  for (const auto& script : dataDowns_) {
    if (script->ComponentName() == componentName) named.push_back(script);
  }
  return named;
}

std::vector<std::shared_ptr<ScriptedDownFile>> ScriptedHost::DownFiles(const QString& componentName) const {
  std::vector<std::shared_ptr<ScriptedDownFile>> named;
  for (const auto& script : downFiles_) {
    if (script->Settings().componentName == componentName) named.push_back(script);
  }
  return named;
}

std::shared_ptr<ScriptedDataDown> ScriptedHost::DataDown(const QString& componentName) const {
  return Newest(DataDowns(componentName), componentName);
}

std::shared_ptr<ScriptedDownFile> ScriptedHost::DownFile(const QString& componentName) const {
  return Newest(DownFiles(componentName), componentName);
}

}  // namespace holdwise
