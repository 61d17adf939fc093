#include "XfcePanel.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr char configuration[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="26"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

ChildProcess::Spec programOn(const VirtualDesktop& desktop, const QString& program) {
    ChildProcess::Spec spec;
    spec.program = program;
    spec.environment = desktop.environment();
    spec.outputFile = desktop.folders().log(QFileInfo(program).fileName());
    return spec;
}

} // namespace

XfcePanel::XfcePanel(const VirtualDesktop& desktop) : m_desktop(desktop) {
    desktop.folders().write(u"config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s,
                            configuration);
    m_settings.emplace(programOn(desktop, QStringLiteral(SNAPVANE_XFCONFD)));
}

void XfcePanel::show() {
    m_panel.emplace(programOn(m_desktop, QStringLiteral(SNAPVANE_XFCE4_PANEL)));
}

} // namespace snapvane::testing
