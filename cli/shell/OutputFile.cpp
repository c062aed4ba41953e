#include "cli/shell/OutputFile.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>

#include "cli/shell/Outcome.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Throws the reason for which a call of the system failed, unless it did not.
void require(bool isDone)
{
    if (!isDone)
    {
        throw std::system_error(errno, std::generic_category());
    }
}

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) { require(number >= 0); }

    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    ~Descriptor()
    {
        if (number_ >= 0)
        {
            ::close(number_);
        }
    }

    int number() const { return number_; }

    void write(QByteArray const& content) const
    {
        for (qsizetype done = 0; done < content.size();)
        {
            auto const size = static_cast<std::size_t>(content.size() - done);
            auto const written = ::write(number_, content.constData() + done, size);
            require(written >= 0 || errno == EINTR);
            done += written > 0 ? static_cast<qsizetype>(written) : 0;
        }
    }

    /// Not every kind of file can be, nor does it have to be.
    void sync() const { require(::fsync(number_) == 0 || errno == EINVAL || errno == ENOTSUP); }

    /// Some file systems tell only now that there is no room.
    void close() { require(::close(std::exchange(number_, -1)) == 0); }

private:
    int number_;
};

/// With the slash at its end.
QByteArray folderOf(QByteArray const& path)
{
    auto const slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray("./") : path.left(slash + 1);
}

void syncFolderOf(QByteArray const& path)
{
    Descriptor const folder(::open(folderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    folder.sync();
}

/// A new file in the folder of another, gone with this object unless it takes that one's place.
class Neighbour
{
public:
    explicit Neighbour(QByteArray const& target)
        : name_(folderOf(target) + ".kelo-XXXXXX"), file_(::mkostemp(name_.data(), O_CLOEXEC))
    {
    }
    Neighbour(Neighbour const&) = delete;
    Neighbour& operator=(Neighbour const&) = delete;

    ~Neighbour()
    {
        if (!name_.isEmpty())
        {
            ::unlink(name_.constData());
        }
    }

    void replace(QByteArray const& target, QByteArray const& content, mode_t mode)
    {
        require(::fchmod(file_.number(), mode) == 0);
        file_.write(content);
        file_.sync();
        file_.close();
        require(::rename(name_.constData(), target.constData()) == 0);
        name_.clear();
        syncFolderOf(target);
    }

private:
    QByteArray name_;
    Descriptor file_;
};

/// Where a path leads to, through all links.
QByteArray resolved(QByteArray const& path)
{
    std::unique_ptr<char, decltype(&std::free)> const name(::realpath(path.constData(), nullptr), &std::free);
    require(name != nullptr);
    return name.get();
}

template <class Step>
void orFail(QString const& what, QString const& path, Step const& step)
{
    try
    {
        step();
    }
    catch (std::system_error const& error)
    {
        throw Failure(
            ExitCode::FileFailed,
            u"Cannot write the %1 \"%2\": %3."_s.arg(what, path, QString::fromStdString(error.code().message())));
    }
}

} // namespace

OutputFile::OutputFile(char const* what, QString const& path, mode_t mode)
    : what_(QLatin1String(what)), path_(path), target_(QFile::encodeName(path)), mode_(mode)
{
    orFail(
        what_, path_,
        [this]
        {
            struct stat info = {};
            bool const exists = ::stat(target_.constData(), &info) == 0;
            if (path_ == "-"_L1)
            {
                direct_ = ::dup(STDOUT_FILENO);
                require(direct_ >= 0);
            }
            else if (exists && !S_ISREG(info.st_mode))
            {
                direct_ = ::open(target_.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
                require(direct_ >= 0);
            }
            else
            {
                // A link to nothing is not taken for a free place.
                require(exists || (errno == ENOENT && !target_.isEmpty()));
                require(exists || ::lstat(target_.constData(), &info) != 0);
                require(!exists || ::access(target_.constData(), W_OK) == 0);
                target_ = exists ? resolved(target_) : target_;
                Neighbour const attempt(target_);
            }
        });
}

OutputFile::~OutputFile()
{
    if (direct_ >= 0)
    {
        ::close(direct_);
    }
}

void OutputFile::write(QByteArray const& content)
{
    orFail(
        what_, path_,
        [this, &content]
        {
            if (direct_ >= 0)
            {
                Descriptor file(std::exchange(direct_, -1));
                file.write(content);
                file.close();
            }
            else
            {
                Neighbour(target_).replace(target_, content, mode_);
            }
        });
}

void OutputFile::remove()
{
    orFail(
        what_, path_,
        [this]
        {
            require(::unlink(target_.constData()) == 0);
            syncFolderOf(target_);
        });
}

void checkPlace(QString const& path, bool mayReplace)
{
    QFileInfo const place(path);
    if ((place.exists() || place.isSymLink()) && !(mayReplace && place.isFile()))
    {
        QString const advice = place.isFile() ? u"; --overwrite replaces it"_s : QString();
        throw Failure(ExitCode::FileFailed, u"\"%1\" is there already%2."_s.arg(path, advice));
    }
}

} // namespace cli
