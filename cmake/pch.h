// Headers that most sources include and that seldom change.
#include <QCoreApplication>
#include <QIcon>
#include <QString>
#include <QTreeWidget>
#include <boost/bind/bind.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/signals2.hpp>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>
