#include "BusConfiguration.h"

namespace snapvane::testing {

QByteArray busConfiguration(const QString& socketPath) {
    constexpr char configuration[] = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
    return QString::fromLatin1(configuration).arg(socketPath).toLocal8Bit();
}

} // namespace snapvane::testing
