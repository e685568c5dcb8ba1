#include "zip/writer/packer.h"

#include <algorithm>
#include <utility>

#include "zip/base/paths.h"

namespace vantrel::zip {

namespace {

constexpr const char* kNotCompressed = "A file could not be compressed";

}  // namespace

Packer::Packer(SourceReader& reader, WorkSource& source, RunChannel& channel,
               std::unique_ptr<Deflater> deflater)
    : reader_(reader), source_(source), channel_(channel), deflater_(std::move(deflater)) {}

PackedJob Packer::Pack(Job& job, Buffer room) {
    PackedJob packed;
    packed.bytes = std::move(room);
    packed.bytes.Clear();
    if (job.piece) {
        PackPiece(job, packed);
    } else {
        PackBatch(job, packed);
    }
    return packed;
}

Entry Packer::MakeEntry(const SourceItem& item) {
    Entry entry;
    entry.name = item.name;
    std::replace(entry.name.begin(), entry.name.end(), '\\', '/');
    if (item.IsFolder()) {
        entry.name += '/';
    }
    entry.attributes = item.attributes;
    entry.times = item.times;
    entry.modified_local = reader_.machine().clock.ToLocal(item.times.modified);
    return entry;
}

void Packer::PackBatch(Job& job, PackedJob& packed) {
    packed.items.reserve(job.items.size());
    for (const SourceItem& item : job.items) {
        channel_.CheckStop();
        PackItem(item, packed);
    }
}

void Packer::PackItem(const SourceItem& item, PackedJob& packed) {
    PackedItem result;
    result.path = JoinPath(reader_.folder(), item.name);
    result.listed_size = item.size;
    result.entry = MakeEntry(item);
    if (item.IsFolder()) {
        input_.Clear();
        AppendFile(result, packed.bytes);
    } else {
        PackFile(item, result, packed.bytes);
    }
    packed.items.push_back(std::move(result));
}

void Packer::PackFile(const SourceItem& item, PackedItem& result, Buffer& bytes) {
    try {
        if (reader_.Attempt([&] { return ReadFile(result); })) {
            AppendFile(result, bytes);
        } else {
            result.moved = true;
            source_.StoreLater(item, false);
        }
    } catch (const Error& error) {
        result.trouble = Unreadable(result.path, error);
    }
}

// Reads the whole file into input_; false when it is too big for that by now. One byte more than
// was listed is asked for: as long as that one is missing, nothing more needs to be asked.
bool Packer::ReadFile(PackedItem& result) {
    const auto file = reader_.machine().files.Open(result.path, platform::OpenMode::kRead);
    const auto listed = static_cast<std::size_t>(result.listed_size);
    result.trouble.reset();
    input_.Resize(listed + 1);
    std::size_t count = file->Read(input_.data(), input_.size());
    if (count == listed) {
        input_.Resize(listed);
        return true;
    }
    const std::uint64_t size = file->Size();
    if (size > kChunkSize) {
        return false;
    }
    input_.Resize(count);
    input_.Resize(std::max(static_cast<std::size_t>(size), count));
    count += ReadFully(*file, input_.data() + count, input_.size() - count);
    input_.Resize(count);
    if (count != size || file->Size() != size) {
        result.trouble = Changing(result.path);
    }
    return true;
}

// Appends header and data of what is in input_.
void Packer::AppendFile(PackedItem& result, Buffer& bytes) {
    Entry& entry = result.entry;
    output_.Clear();
    const bool worth_it = deflater_ && !sampler_.LooksIncompressible(input_.data(), input_.size());
    const bool smaller =
        worth_it && UntilItWorks(channel_, Cannot(kNotCompressed, result.path), [&] {
            return deflater_->Whole(input_.data(), input_.size(), output_);
        });
    const Buffer& data = smaller ? output_ : input_;
    entry.method = smaller ? Method::kDeflated : Method::kStored;
    entry.crc = Crc32(input_.data(), input_.size());
    entry.size = input_.size();
    entry.packed_size = data.size();
    entry.offset = bytes.size();
    header_.clear();
    AppendLocalHeader(header_, entry);
    result.header_size = header_.size();
    bytes.Append(header_);
    bytes.Append(data.View());
    result.stored = true;
}

void Packer::PackPiece(Job& job, PackedJob& packed) {
    packed.piece = job.piece;
    packed.file = job.items.front();
    packed.path = JoinPath(reader_.folder(), packed.file.name);
    const Piece& piece = *job.piece;
    if (piece.first) {
        packed.entry = MakeEntry(packed.file);
        packed.entry.method = piece.method;
        // What does not shrink is stored, so the packed size needs the wide field only with this
        // one.
        packed.entry.wide_local = NeedsWideSizes(piece.file_size, 0);
    }
    const std::uint8_t* const data = job.PieceData();
    const std::size_t size = job.PieceSize();
    packed.raw_size = size;
    packed.crc = Crc32(data, size);
    if (piece.abandoned) {
        return;
    }
    if (piece.method == Method::kStored) {
        packed.bytes.Append(data, size);
    } else if (sampler_.LooksIncompressible(data, size)) {
        StorePart(data, size, piece.last, packed.bytes);
    } else {
        UntilItWorks(channel_, Cannot(kNotCompressed, packed.path),
                     [&] { deflater_->Part(data, size, piece.last, packed.bytes, job.history); });
    }
}

}  // namespace vantrel::zip
