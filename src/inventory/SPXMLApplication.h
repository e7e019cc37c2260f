// One component of a device, a driver or firmware, with its version.
#pragma once

#include "text/SPString.h"
#include "text/SPUString.h"
#include "xml/SPXMLAttribute.h"
#include "xml/SPXMLGenerator.h"

namespace tolvanix {

class SPXMLApplication : public SPXMLGenerator {
 public:
  SPXMLApplication(const SPUString& name, const SPString& type, const SPString& subComponent,
                   const SPString& versionText);
  explicit SPXMLApplication(std::u16string_view text) { SPXMLApplication::parseXML(text); }

  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;

  void setDisplay(const SPUString& name) { display.setValue(name); }

  const SPUString& getComponentType() const { return componentType.getValue(); }
  const SPUString& getSubComponentID() const { return subComponentID.getValue(); }
  const SPUString& getVersion() const { return version.getValue(); }
  const SPUString& getPackageVersion() const { return packageVersion.getValue(); }
  const SPUString& getDisplay() const { return display.getValue(); }

 private:
  SPXMLAttribute componentType{u"componentType"};  // the inventory writes DRVR and FRMW
  SPXMLAttribute subComponentID{u"subComponentID"};
  SPXMLAttribute version{u"version"};
  SPXMLAttribute packageVersion{u"version"};  // of the Package child
  SPXMLAttribute display{u"display"};
};

}  // namespace tolvanix
